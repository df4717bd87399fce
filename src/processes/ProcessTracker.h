#pragma once

#include "base/Published.h"
#include "base/Scheduler.h"
#include "processes/TrackerState.h"

#include <memory>
#include <vector>

namespace tidewell {

class ChildProcess;
struct Platform;

/// Runs the per-process traffic tool at an interval and publishes which programs use the network.
///
/// Owned by a shared_ptr. Waits for the tool on a serial queue of its own.
class ProcessTracker : public TrackerState, public std::enable_shared_from_this<ProcessTracker> {
public:
  /// Does not start anything. Borrows the platform.
  explicit ProcessTracker(const Platform& platform);

  /// Runs the tool after 2.0 seconds and then every `interval` seconds. A timer that already runs
  /// continues beside the new one until the tracker ends, so call `stop` first.
  void start(Seconds interval);

  /// Ends the timer started last; the published list stays. Does nothing if stopped.
  void stop();

private:
  [[nodiscard]] Async<> refresh();
  [[nodiscard]] Async<std::vector<ProcessUsage>> parseNettop();

  WorkQueue& m_main;
  WorkQueue& m_background;
  ChildProcess& m_children;
  std::unique_ptr<WorkQueue> m_workQueue; // its tasks use all members above
  std::unique_ptr<Timer> m_timer;
  std::vector<std::unique_ptr<Timer>> m_earlierTimers;
};

} // namespace tidewell
