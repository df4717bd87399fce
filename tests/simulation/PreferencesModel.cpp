#include "PreferencesModel.h"

#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <sstream>

namespace tidewell::test {

namespace {

// The program waits until a damaged file has been quiet for fifty milliseconds.
constexpr Ticks settling = std::chrono::milliseconds(100);

std::string numberText(double value) {
  if (std::isnan(value)) {
    return "nan";
  }
  if (std::isinf(value)) {
    return value > 0.0 ? "inf" : "-inf";
  }
  std::array<char, 400> text{};
  std::snprintf(text.data(), text.size(), "%.17e", value);
  return text.data();
}

std::string textOf(const PreferenceValue& value) {
  if (const auto* truth = std::get_if<bool>(&value)) {
    return *truth ? "true" : "false";
  }
  if (const auto* whole = std::get_if<std::int64_t>(&value)) {
    return std::to_string(*whole);
  }
  if (const auto* number = std::get_if<double>(&value)) {
    return numberText(*number);
  }
  return '"' + std::get<std::string>(value) + '"';
}

std::string documentOf(const std::map<std::string, PreferenceValue>& values) {
  std::string text = "# written by another program\n";
  for (const auto& [key, value] : values) {
    text += key + " = " + textOf(value) + "\n";
  }
  return text;
}

std::string inWords(const std::optional<PreferenceValue>& value) {
  return value ? textOf(*value) : "nothing";
}

} // namespace

void PreferencesModel::writeElsewhere(const std::string& key,
                                      const std::optional<PreferenceValue>& value) {
  if (value) {
    m_values[key] = *value;
  } else {
    m_values.erase(key);
  }
  write(documentOf(m_values) + "[ofAnother]\nkey = [1, 2]\n");
}

void PreferencesModel::spoil() {
  const std::string document = documentOf(m_values);
  switch (m_dice.below(3)) {
  case 0:
    return write(document + "refreshInterval = = 5\n");
  case 1:
    return write("\xFF\xFE" + std::string("garbage\n") + document);
  default:
    return write("<<<<<<< mine\n" + document + "=======\n[[[\n");
  }
}

void PreferencesModel::remove() {
  std::filesystem::remove(path());
  m_values.clear();
  m_changedAt = m_scheduler.now();
  ++m_foreignWrites;
}

void PreferencesModel::write(const std::string& text) {
  if (m_dice.chance(0.5)) {
    writeInPlace(path(), text);
  } else {
    writeByRenaming(path(), text);
  }
  m_changedAt = m_scheduler.now();
  ++m_foreignWrites;
}

void PreferencesModel::check(const PreferencesStore& store) {
  if (m_foreignWrites > 0 && m_scheduler.now() - m_changedAt < settling) {
    return;
  }
  for (const auto& [key, value] : m_values) {
    const auto stored = store.value(key);
    m_findings.require(stored && isSame(*stored, value), "the preference", key, inWords(stored),
                       "instead of", textOf(value));
  }
  for (const char* key : {"refreshInterval", "trackPerProcess", "slowSpeedThreshold"}) {
    m_findings.require(m_values.contains(key) || !store.value(key), "a preference nobody wrote",
                       key, inWords(store.value(key)));
  }
}

} // namespace tidewell::test
