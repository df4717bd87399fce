#pragma once

#include "platform/PreferencesStore.h"

#include <string>
#include <string_view>

namespace tidewell {

/// The preferences file as text: a TOML document whose top-level keys are the preferences.
///
/// Values are changed in place, so that comments, order, spelling, unknown keys and tables stay as
/// the user wrote them. Pure.
class PreferencesText {
public:
  /// Takes any bytes. Of a text that is no valid TOML every line that cannot be read is left out.
  explicit PreferencesText(std::string_view text = {});

  /// Whether the text was valid as it came.
  [[nodiscard]] bool isIntact() const { return m_isIntact; }

  /// The valid text.
  [[nodiscard]] const std::string& text() const { return m_text; }

  /// The preferences in it. Keys of other types (dates, arrays, tables) are not among them.
  [[nodiscard]] const PreferenceValues& values() const { return m_values; }

  /// Gives a key its value. False when the text had to be made anew of its values, so that what
  /// else was in it is lost: a way out that no known text takes. Key and value are valid UTF-8.
  [[nodiscard]] bool set(std::string_view key, const PreferenceValue& value);

private:
  bool accept(std::string candidate, std::string_view key, const PreferenceValue& value,
              const std::string& others);

  std::string m_text;
  PreferenceValues m_values;
  bool m_isIntact = true;
};

} // namespace tidewell
