#pragma once

#include "base/Published.h"

#include <cstdint>
#include <optional>
#include <string>

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

/// Whether a run measured anything. One that did not has failed.
[[nodiscard]] inline bool hasMeasured(const SpeedTestResult& result) {
  return result.downloadMbps != 0.0 || result.uploadMbps != 0.0 || result.responsiveness != 0;
}

/// What the speed test publishes.
struct SpeedTestState {
  Published<bool> isRunning{false};
  /// The last finished run, also one that failed; nullopt before the first and after one that could
  /// not start.
  Published<std::optional<SpeedTestResult>> lastResult;
  /// The last run that measured anything; nullopt before the first.
  Published<std::optional<SpeedTestResult>> lastMeasured;
  /// Why the last finished run failed, for people; empty if it did not, and before the first.
  Published<std::string> failure;
};

/// What to show: the last finished run, or the last that measured anything if that one failed.
[[nodiscard]] inline const std::optional<SpeedTestResult>&
shownResult(const SpeedTestState& state) {
  return (state.failure.get().empty() ? state.lastResult : state.lastMeasured).get();
}

} // namespace tidewell
