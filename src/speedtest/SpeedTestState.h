#pragma once

#include "base/Published.h"

#include <cstdint>
#include <optional>

namespace tidewell {

/// Result of one speed test.
struct SpeedTestResult {
  /// When the tool's output was read; seconds since 1970-01-01 UTC.
  double timestamp = 0.0;
  /// Megabits per second; 0.0 if not measured.
  double downloadMbps = 0.0;
  double uploadMbps = 0.0;
  /// Round trips per minute under load; 0 if not measured.
  std::int64_t responsiveness = 0;

  friend bool operator==(const SpeedTestResult&, const SpeedTestResult&) = default;
};

/// What the speed test publishes.
struct SpeedTestState {
  Published<bool> isRunning{false};
  /// The last finished run; nullopt before the first and after one that could not start.
  Published<std::optional<SpeedTestResult>> lastResult;
};

} // namespace tidewell
