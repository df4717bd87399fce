#pragma once

#include "helpers/networkQuality/LineMeasurement.h"

#include <optional>
#include <string>

namespace tidewell {

/// What became of both directions; none of one that was not measured.
struct TestResult {
  std::optional<LineResult> download;
  std::optional<LineResult> upload;
};

/// The result as lines of text, whatever the locale: capacities in megabits per second and the
/// responsiveness of the worse direction. What was not measured has no line.
[[nodiscard]] std::string resultText(const TestResult& result);

/// Megabits per second.
[[nodiscard]] double inMegabits(double bytesPerSecond);

} // namespace tidewell
