#pragma once

#include <string>
#include <string_view>

namespace tidewell {

/// A value of type string, as the Desktop Entry specification escapes it.
[[nodiscard]] std::string stringValue(std::string_view text);

/// The Exec value of a desktop entry that starts the program of this path without arguments,
/// quoted and escaped as the Desktop Entry specification has it, whatever the path contains.
[[nodiscard]] std::string execValue(std::string_view programPath);

} // namespace tidewell
