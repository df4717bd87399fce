#pragma once

#include "platform/PreferencesStore.h"

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace tidewell {

/// The preferences file as text: TOML lines "key = value", down to the first table.
///
/// Changing a value replaces that value alone. Comments, order, spelling, unknown keys and tables
/// stay as the user wrote them.
class PreferencesText {
public:
  /// Accepts any bytes. Leaves out every line that is not valid, down to the first table.
  explicit PreferencesText(std::string_view text = {});

  /// Whether no line was left out.
  [[nodiscard]] bool isIntact() const { return m_isIntact; }

  /// The text without what was left out.
  [[nodiscard]] const std::string& text() const { return m_text; }

  /// The preferences in it. Of two lines for one key the later counts.
  [[nodiscard]] const PreferenceValues& values() const { return m_values; }

  /// Sets a value where the key stands, or on a new line before the first table.
  void set(std::string_view key, const PreferenceValue& value);

private:
  // A range of bytes of m_text.
  struct Span {
    std::size_t begin;
    std::size_t end;
  };

  [[nodiscard]] std::string lineFor(std::string_view key, const PreferenceValue& value) const;

  std::string m_text;
  std::map<std::string, Span, std::less<>> m_spans; // where each key's value stands
  std::size_t m_end = 0;                            // where a new line goes
  PreferenceValues m_values;
  bool m_isIntact = true;
};

} // namespace tidewell
