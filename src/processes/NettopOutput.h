#pragma once

#include "processes/ProcessUsage.h"

#include <string_view>
#include <vector>

namespace tidewell {

/// The ten heaviest programs in the output of the per-process traffic tool, heaviest first.
///
/// The output is a header line, then lines of the form "name.pid,bytes_in,bytes_out,". Lines of
/// another form are skipped; an invalid number counts as 0. Takes any bytes; aborts if a sum
/// exceeds 64 bits. Pure.
[[nodiscard]] std::vector<ProcessUsage> parseNettopOutput(std::string_view output);

} // namespace tidewell
