#pragma once

#include "helpers/nettop/Measurement.h"

#include <string>
#include <string_view>
#include <vector>

namespace tidewell::nettop {

/// Makes a program's name, which may be any bytes, fit for the output and its reader: well-formed
/// UTF-8 without control characters and without the "." and "," at which the reader splits, neither
/// empty nor one of the names that the reader skips. Replaces with "_". Pure.
[[nodiscard]] std::string printableName(std::string_view bytes);

/// The output: a header, then a line "name.process,received,sent," for each row that moved
/// something, heaviest first. At most 256 lines and 32 KiB: of more rows those of the same name
/// become one, and the lightest become a last line "others". Pure.
[[nodiscard]] std::string nettopText(std::vector<ProcessTraffic> rows);

} // namespace tidewell::nettop
