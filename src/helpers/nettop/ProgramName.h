#pragma once

#include <string>
#include <string_view>

namespace tidewell::nettop {

/// Makes a program's name, which may be any bytes, fit for the output, its reader and a person. The
/// result is well-formed UTF-8 and not empty. It contains neither control characters nor the "."
/// and
/// "," at which the reader splits, and it is none of the names that the reader skips. It contains
/// no parentheses, which mark the rows that are not programs, and no character that cannot be seen,
/// which could make it look like another name. Replaces each of these with "_". Pure.
[[nodiscard]] std::string printableName(std::string_view bytes);

} // namespace tidewell::nettop
