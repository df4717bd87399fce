#pragma once

#include "speedtest/SpeedTestState.h"

#include <string_view>

namespace tidewell {

/// Parses the network-quality tool's output as read at `now` (seconds since 1970).
///
/// Searches line by line for capacities; the last of a kind counts. Takes any bytes; missing values
/// are zero. Pure.
[[nodiscard]] SpeedTestResult parseNetworkQualityOutput(std::string_view output, double now);

} // namespace tidewell
