#pragma once

#include <string>
#include <string_view>

namespace tidewell {

/// The Exec value of a desktop entry that starts the program of this path without arguments,
/// quoted and escaped as the Desktop Entry specification has it, whatever the path contains.
[[nodiscard]] std::string execValue(std::string_view programPath);

} // namespace tidewell
