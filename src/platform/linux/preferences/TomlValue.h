#pragma once

#include "platform/PreferencesStore.h"

#include <optional>
#include <string>
#include <string_view>

namespace tidewell {

/// A valid TOML value. Dates, arrays and tables hold no preference.
struct TomlValue {
  std::optional<PreferenceValue> preference;
};

/// Reads the value at the start of the text and removes it from the text. Returns nullopt if it is
/// not valid. Of arrays and tables only brackets and strings are checked.
[[nodiscard]] std::optional<TomlValue> readTomlValue(std::string_view& text);

/// Reads the key at the start of the text, bare or quoted, and removes it from the text. Returns
/// nullopt if it is not valid.
[[nodiscard]] std::optional<std::string> readTomlKey(std::string_view& text);

/// The value on one line. Reading it returns the same type and value, except that bytes which are
/// not UTF-8 become U+FFFD.
[[nodiscard]] std::string tomlText(const PreferenceValue& value);

/// The key, quoted if it has to be.
[[nodiscard]] std::string tomlKey(std::string_view key);

} // namespace tidewell
