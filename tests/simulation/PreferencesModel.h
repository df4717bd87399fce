#pragma once

#include "Dice.h"
#include "Findings.h"
#include "platform/PreferencesStore.h"
#include "support/TemporaryDirectory.h"

#include <map>
#include <optional>
#include <string>

namespace tidewell::test {

/// The preferences file with several writers, and its required contents: a value stays until
/// somebody writes another, whatever happens to the file in between.
class PreferencesModel {
public:
  PreferencesModel(const VirtualScheduler& scheduler, Dice& dice, Findings& findings)
      : m_scheduler(scheduler), m_dice(dice), m_findings(findings) {}

  [[nodiscard]] std::string path() const { return (m_directory / "preferences.toml").string(); }

  /// The program writes a value.
  void sets(const std::string& key, const PreferenceValue& value) { m_values[key] = value; }

  /// Another writer changes one value, in place or by replacing the file.
  void writeElsewhere(const std::string& key, const std::optional<PreferenceValue>& value);
  /// Another writer damages the file: some lines cannot be parsed any more.
  void spoil();
  /// Another writer removes the file and every value.
  void remove();

  /// Compares the values read with those written.
  void check(const PreferencesStore& store);

  [[nodiscard]] int foreignWrites() const { return m_foreignWrites; }

private:
  void write(const std::string& text);

  const VirtualScheduler& m_scheduler;
  Dice& m_dice;
  Findings& m_findings;
  TemporaryDirectory m_directory;
  std::map<std::string, PreferenceValue> m_values;
  Ticks m_changedAt = Ticks::zero(); // by others
  int m_foreignWrites = 0;
};

} // namespace tidewell::test
