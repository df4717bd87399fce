#pragma once

#include <span>
#include <vector>

namespace tidewell {

/// The arithmetic mean; 0 of no values.
[[nodiscard]] double mean(std::span<const double> values);

/// The mean of the lowest 95 % of the values, of one value at least: one straggler in twenty tells
/// more about a lost packet than about the line. 0 of no values.
[[nodiscard]] double trimmedMean(std::vector<double> values);

/// Whether the standard deviation of the values is below `tolerance` times their last one.
[[nodiscard]] bool isSteady(std::span<const double> values, double tolerance);

} // namespace tidewell
