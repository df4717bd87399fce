#pragma once

#include "processes/ProcessUsage.h"

#include <string_view>
#include <vector>

namespace tidewell {

/// The ten heaviest programs in the output of the per-process statistics tool, heaviest first.
///
/// The output is a header line and then lines of the form "name.pid,bytes_in,bytes_out,"; a line of
/// another form is skipped and a number that does not parse counts as 0. Any bytes may be given; a
/// sum that does not fit 64 bits aborts. Pure.
[[nodiscard]] std::vector<ProcessUsage> parseNettopOutput(std::string_view output);

} // namespace tidewell
