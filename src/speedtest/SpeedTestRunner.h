#pragma once

#include "base/Scheduler.h"
#include "speedtest/SpeedTestState.h"

#include <memory>
#include <optional>

namespace tidewell {

class ChildProcess;
class Clock;
struct Platform;

/// Measures the line's capacity on demand with the network-quality tool.
///
/// Made with `makeService`. Everything public belongs to the main thread; the tool runs on the
/// background queue.
class SpeedTestRunner : public SpeedTestState,
                        public std::enable_shared_from_this<SpeedTestRunner> {
public:
  /// Borrows the platform.
  explicit SpeedTestRunner(const Platform& platform);

  /// Starts a test and returns at once. Does nothing while one runs.
  void run();

private:
  [[nodiscard]] std::optional<SpeedTestResult> executeTest();

  WorkQueue& m_main;
  WorkQueue& m_background;
  Clock& m_clock;
  ChildProcess& m_children;
};

} // namespace tidewell
