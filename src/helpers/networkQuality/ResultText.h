#pragma once

#include "helpers/networkQuality/LineMeasurement.h"

#include <optional>
#include <string>

namespace tidewell {

/// The results of both directions; nullopt of one that was not measured.
struct TestResult {
  std::optional<LineResult> download;
  std::optional<LineResult> upload;
};

/// Formats the result as lines of text, independently of the locale: capacities in megabits per
/// second and the responsiveness of the worse direction. What was not measured has no line.
[[nodiscard]] std::string resultText(const TestResult& result);

/// A line that says why something was not measured.
[[nodiscard]] std::string failureText(const std::string& reason);

/// Megabits per second.
[[nodiscard]] double inMegabits(double bytesPerSecond);

} // namespace tidewell
