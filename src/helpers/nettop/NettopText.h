#pragma once

#include "helpers/nettop/ProcessTraffic.h"

#include <string>
#include <vector>

namespace tidewell::nettop {

/// The output: a header and then a line "name.process,received,sent," for each row that moved
/// something, heaviest first; 256 lines and 32 KiB at the most. Where there are more rows, those of
/// the same name become one, and what is left beyond the last but one goes into a last line,
/// "others". Pure.
[[nodiscard]] std::string nettopText(std::vector<ProcessTraffic> rows);

} // namespace tidewell::nettop
