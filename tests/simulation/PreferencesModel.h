#pragma once

#include "Dice.h"
#include "Findings.h"
#include "platform/PreferencesStore.h"
#include "support/TemporaryDirectory.h"

#include <map>
#include <optional>
#include <string>

namespace tidewell::test {

/// The preferences file as several writers use it, and what must be in it: a value that anybody
/// wrote stays until somebody writes another, whatever becomes of the file in between.
class PreferencesModel {
public:
  PreferencesModel(const VirtualScheduler& scheduler, Dice& dice, Findings& findings)
      : m_scheduler(scheduler), m_dice(dice), m_findings(findings) {}

  [[nodiscard]] std::string path() const { return (m_directory / "preferences.toml").string(); }

  /// The program writes a value.
  void sets(const std::string& key, const PreferenceValue& value) { m_values[key] = value; }

  /// Another writer changes one value, in place or by replacing the file.
  void writeElsewhere(const std::string& key, const std::optional<PreferenceValue>& value);
  /// Another writer spoils the file: some lines cannot be read any more.
  void spoil();
  /// Another writer removes the file, and with it every value.
  void remove();

  /// Holds what readers are told against what was written.
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
