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
/// Made with `makeService`. `start`, `stop` and the published value belong to the main thread; the
/// tool runs on a serial queue of the tracker's own.
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
  void refresh();
  [[nodiscard]] std::vector<ProcessUsage> parseNettop();

  WorkQueue& m_main;
  WorkQueue& m_background;
  ChildProcess& m_children;
  std::unique_ptr<WorkQueue> m_workQueue;
  std::unique_ptr<Timer> m_timer; // main thread; after the queue, so that it is cancelled first
  std::vector<std::unique_ptr<Timer>> m_earlierTimers;
};

} // namespace tidewell
