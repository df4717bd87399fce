#pragma once

#include "speedtest/SpeedTestState.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace tidewell {

/// Parses the network-quality tool's output as read at `now` (seconds since 1970).
///
/// Searches line by line for capacities; the last of a kind counts. Takes any bytes; missing values
/// are zero. Pure.
[[nodiscard]] SpeedTestResult parseNetworkQualityOutput(std::string_view output, double now);

/// The longest reason in bytes. Longer ones are cut.
inline constexpr std::size_t longestFailure = 200;

/// Why the tool failed, as its last line that begins with "Failure: " says, safe for a label; empty
/// if it does not. Takes any bytes. Pure.
[[nodiscard]] std::string networkQualityFailure(std::string_view output);

} // namespace tidewell
