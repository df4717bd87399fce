#pragma once

#include "base/Published.h"
#include "base/Scheduler.h"
#include "processes/TrackerState.h"

#include <memory>
#include <vector>

namespace tidewell {

class ChildProcess;
struct Platform;

/// Runs the per-process statistics tool at an interval and publishes which programs use the
/// network.
///
/// Owned by a shared_ptr. A serial queue of the tracker's own waits for the tool.
class ProcessTracker : public TrackerState, public std::enable_shared_from_this<ProcessTracker> {
public:
  /// Does not start anything. Borrows the platform.
  explicit ProcessTracker(const Platform& platform);

  /// Runs the tool 2.0 seconds from now and then every `interval` seconds. A timer that is already
  /// running goes on firing beside the new one until the tracker ends, so callers stop first.
  void start(Seconds interval);

  /// Ends the timer that was started last; the published list stays. Does nothing when stopped.
  void stop();

private:
  [[nodiscard]] Async<> refresh();
  [[nodiscard]] Async<std::vector<ProcessUsage>> parseNettop();

  WorkQueue& m_main;
  WorkQueue& m_background;
  ChildProcess& m_children;
  std::unique_ptr<WorkQueue> m_workQueue; // last but the timers: its tasks use all that is above
  std::unique_ptr<Timer> m_timer;
  std::vector<std::unique_ptr<Timer>> m_earlierTimers;
};

} // namespace tidewell
