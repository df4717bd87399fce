#pragma once

#include "base/Scheduler.h"
#include "speedtest/SpeedTestState.h"

#include <memory>
#include <optional>
#include <string>

namespace tidewell {

class ChildProcess;
class Clock;
struct Platform;

/// Measures the line's capacity on demand with the network-quality tool.
///
/// A run has failed if the tool could not be started or measured nothing. `failure` then has the
/// tool's reason, or else says which of both it was.
///
/// Owned by a shared_ptr. A background task waits for the tool; it publishes nothing if the runner
/// is gone by then.
class SpeedTestRunner : public SpeedTestState,
                        public std::enable_shared_from_this<SpeedTestRunner> {
public:
  /// Borrows the platform.
  explicit SpeedTestRunner(const Platform& platform);

  /// Starts a test and returns at once. Does nothing while one runs.
  void run();

private:
  void finish(const std::optional<SpeedTestResult>& result, const std::string& reason);
  [[nodiscard]] static Async<> execute(std::weak_ptr<SpeedTestRunner> runner,
                                       ChildProcess& children, WorkQueue& main, Clock& clock);

  WorkQueue& m_main;
  WorkQueue& m_background;
  Clock& m_clock;
  ChildProcess& m_children;
};

} // namespace tidewell
