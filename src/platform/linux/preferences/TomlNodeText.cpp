#include "platform/linux/preferences/TomlNodeText.h"

#include "platform/linux/preferences/TomlText.h"

#include <cstddef>
#include <cstdlib>

namespace tidewell {

namespace {

std::string padded(std::int64_t number, std::size_t digits) {
  std::string text = tomlText(PreferenceValue(number));
  return text.size() < digits ? std::string(digits - text.size(), '0') + text : text;
}

std::string textOf(const toml::date& date) {
  return padded(date.year, 4) + "-" + padded(date.month, 2) + "-" + padded(date.day, 2);
}

std::string textOf(const toml::time& time) {
  return padded(time.hour, 2) + ":" + padded(time.minute, 2) + ":" + padded(time.second, 2) + "." +
         padded(time.nanosecond, 9);
}

std::string textOf(const toml::date_time& moment) {
  std::string text = textOf(moment.date) + "T" + textOf(moment.time);
  if (moment.offset) {
    const int minutes = std::abs(moment.offset->minutes);
    text += (moment.offset->minutes < 0 ? "-" : "+") + padded(minutes / 60, 2) + ":" +
            padded(minutes % 60, 2);
  }
  return text;
}

std::string textOf(const toml::node& node);

std::string lineOf(const toml::key& key, const toml::node& node) {
  return tomlKey(key.str()) + " = " + textOf(node);
}

std::string textOf(const toml::array& array) {
  std::string text = "[";
  for (const toml::node& node : array) {
    text.append(text.size() > 1 ? ", " : "").append(textOf(node));
  }
  return text + "]";
}

std::string textOf(const toml::table& table) {
  std::string text = "{";
  for (const auto& [key, node] : table) {
    text.append(text.size() > 1 ? ", " : "").append(lineOf(key, node));
  }
  return text + "}";
}

std::string textOf(const toml::node& node) {
  if (const auto value = preferenceValue(node)) {
    return tomlText(*value);
  }
  if (const auto* table = node.as_table()) {
    return textOf(*table);
  }
  if (const auto* array = node.as_array()) {
    return textOf(*array);
  }
  if (const auto* date = node.as_date()) {
    return textOf(date->get());
  }
  if (const auto* time = node.as_time()) {
    return textOf(time->get());
  }
  const auto* moment = node.as_date_time();
  return moment == nullptr ? std::string() : textOf(moment->get());
}

} // namespace

std::optional<PreferenceValue> preferenceValue(const toml::node& node) {
  if (const auto* truth = node.as_boolean()) {
    return PreferenceValue(truth->get());
  }
  if (const auto* integer = node.as_integer()) {
    return PreferenceValue(integer->get());
  }
  if (const auto* real = node.as_floating_point()) {
    return PreferenceValue(real->get());
  }
  if (const auto* text = node.as_string()) {
    return PreferenceValue(text->get());
  }
  return std::nullopt;
}

std::string tomlText(const toml::table& table, std::string_view withoutKey) {
  std::string top;
  std::string tables;
  for (const auto& [key, node] : table) {
    if (key.str() == withoutKey) {
      continue;
    }
    if (const auto* inner = node.as_table()) {
      tables += "\n[" + tomlKey(key.str()) + "]\n";
      for (const auto& [innerKey, innerNode] : *inner) {
        tables += lineOf(innerKey, innerNode) + "\n";
      }
    } else {
      top += lineOf(key, node) + "\n";
    }
  }
  return top + tables;
}

} // namespace tidewell
