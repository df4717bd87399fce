#pragma once

#include "helpers/nettop/Measurement.h"

#include <string>
#include <vector>

namespace tidewell::nettop {

/// The output: a header, then a line "name.process,received,sent," for each row that moved
/// something, heaviest first. At most 256 lines and 32 KiB: of more rows those of the same name
/// become one, and the lightest become a last line "(others)". Rows of process 0, which are not
/// programs, are in parentheses. Pure.
[[nodiscard]] std::string nettopText(std::vector<ProcessTraffic> rows);

} // namespace tidewell::nettop
