#pragma once

#include <string>
#include <string_view>

namespace tidewell {

/// What is left of a broken TOML text when every line that cannot be read by itself is taken out:
/// a valid text. Of two lines for the same key the later one stays.
[[nodiscard]] std::string repairedPreferences(std::string_view text);

} // namespace tidewell
