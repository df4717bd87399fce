#pragma once

#include <string>
#include <string_view>

namespace tidewell::nettop {

/// A program's name, which may be any bytes, in a form that passes through the output and its
/// reader: well-formed UTF-8 that shows, neither empty nor one of the names that readers leave out,
/// without the "." and "," at which they split. What cannot stay becomes "_". Pure.
[[nodiscard]] std::string printableName(std::string_view bytes);

} // namespace tidewell::nettop
