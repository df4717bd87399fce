#include "platform/linux/preferences/PreferencesText.h"

#include "platform/linux/preferences/PreferencesRepair.h"
#include "platform/linux/preferences/TomlDocument.h"
#include "platform/linux/preferences/TomlText.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

namespace tidewell {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

std::size_t startOf(std::string_view text) {
  return text.starts_with(byteOrderMark) ? byteOrderMark.size() : 0;
}

std::string_view lineEndOf(std::string_view text) {
  return text.find("\r\n") == std::string_view::npos ? "\n" : "\r\n";
}

std::string_view lineAt(std::string_view text, std::size_t begin) {
  std::string_view line = text.substr(begin, text.find('\n', begin) - begin);
  line.remove_prefix(std::min(line.find_first_not_of(" \t\r"), line.size()));
  return line;
}

// The start of a header's line, moved up over the comment that belongs to it and blank lines.
std::size_t aboveHeader(std::string_view text, std::size_t header) {
  std::size_t position = header;
  bool isWithinComment = true;
  while (position > startOf(text)) {
    const std::size_t newline = text.rfind('\n', position - 2);
    const std::size_t begin =
        position < 2 || newline == std::string_view::npos ? startOf(text) : newline + 1;
    const std::string_view line = lineAt(text, begin);
    isWithinComment = isWithinComment && line.starts_with('#');
    if (!isWithinComment && !line.empty()) {
      break;
    }
    position = begin;
  }
  return position;
}

// Where a new line for the top level may go, best first; the last one is always right.
std::vector<std::size_t> placesForLine(std::string_view text) {
  constexpr std::size_t mostHeaders = 8; // an array or a string may have lines that look like one
  std::vector<std::size_t> places{text.size()};
  for (std::size_t begin = startOf(text); begin < text.size() && places.size() <= mostHeaders;) {
    if (lineAt(text, begin).starts_with('[')) {
      places.push_back(aboveHeader(text, begin));
    }
    const std::size_t newline = text.find('\n', begin);
    begin = newline == std::string_view::npos ? text.size() : newline + 1;
  }
  places.push_back(startOf(text));
  return places;
}

std::string withLine(std::string_view text, std::size_t place, std::string_view line) {
  const std::string_view end = lineEndOf(text);
  std::string result(text.substr(0, place));
  if (place > startOf(text) && text[place - 1] != '\n') {
    result += end;
  }
  result.append(line).append(end);
  if (place < text.size() && !lineAt(text, place).empty()) {
    result += end; // a table's header keeps its distance
  }
  return result.append(text.substr(place));
}

std::string textOf(const PreferenceValues& values) {
  std::string text;
  for (const auto& [key, value] : values) {
    text += tomlKey(key) + " = " + tomlText(value) + "\n";
  }
  return text;
}

} // namespace

PreferencesText::PreferencesText(std::string_view text) : m_text(text) {
  auto document = TomlDocument::parse(m_text);
  if (!document) {
    m_isIntact = false;
    m_text = repairedPreferences(text);
    document = TomlDocument::parse(m_text);
  }
  m_values = document ? document->values() : PreferenceValues{};
}

bool PreferencesText::set(std::string_view key, const PreferenceValue& value) {
  const auto stored = m_values.find(key);
  if (stored != m_values.end() && isSame(stored->second, value)) {
    return true;
  }
  const auto document = TomlDocument::parse(m_text);
  const std::string others = document ? document->textWithout(key) : std::string();
  const std::string line = tomlKey(key) + " = " + tomlText(value);
  if (document && document->contains(key)) {
    if (const auto span = document->valueSpan(m_text, key)) {
      std::string candidate = m_text;
      candidate.replace(span->begin, span->end - span->begin, tomlText(value));
      if (accept(std::move(candidate), key, value, others)) {
        return true;
      }
    }
    // The key names a table, or stands in several places: the form is lost, the contents are not.
    if (accept(line + "\n" + others, key, value, others)) {
      return true;
    }
  } else if (document) {
    for (const std::size_t place : placesForLine(m_text)) {
      if (accept(withLine(m_text, place, line), key, value, others)) {
        return true;
      }
    }
  }
  m_values.insert_or_assign(std::string(key), value);
  m_text = textOf(m_values);
  return false;
}

bool PreferencesText::accept(std::string candidate, std::string_view key,
                             const PreferenceValue& value, const std::string& others) {
  const auto document = TomlDocument::parse(candidate);
  if (!document) {
    return false;
  }
  PreferenceValues values = document->values();
  const auto stored = values.find(key);
  if (stored == values.end() || !isSame(stored->second, value) ||
      document->textWithout(key) != others) {
    return false;
  }
  m_text = std::move(candidate);
  m_values = std::move(values);
  return true;
}

} // namespace tidewell
