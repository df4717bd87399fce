#pragma once

#include "platform/PreferencesStore.h"

#include <string>
#include <string_view>

namespace tidewell {

/// The value as TOML writes it, on one line, such that reading it gives the same type and value
/// (of a string that is no UTF-8: what `validUtf8` makes of it).
[[nodiscard]] std::string tomlText(const PreferenceValue& value);

/// The key as TOML writes it: bare where it may be, else quoted.
[[nodiscard]] std::string tomlKey(std::string_view key);

/// The text with U+FFFD in the place of every byte that is not part of valid UTF-8.
[[nodiscard]] std::string validUtf8(std::string_view text);

} // namespace tidewell
