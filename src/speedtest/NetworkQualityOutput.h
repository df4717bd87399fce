#pragma once

#include "speedtest/SpeedTestState.h"

#include <string_view>

namespace tidewell {

/// What the network-quality tool's output says, taken to be read at `now` (seconds since 1970).
///
/// Capacities are looked for line by line; of several lines of a kind the last one counts. Any
/// bytes may be given; what is not found is zero. Pure.
[[nodiscard]] SpeedTestResult parseNetworkQualityOutput(std::string_view output, double now);

} // namespace tidewell
