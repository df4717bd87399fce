#pragma once

#include "base/Scheduler.h"

#include <thread>

namespace tidewell {

/// The queue behind `Scheduler::main`, as the thread scheduler sees it.
///
/// "The main thread" is a turn, not a thread: whoever holds it runs main-queue tasks, one holder at
/// a time. The event loop holds it except while it sleeps. A worker that has just produced a result
/// may therefore take the turn and deliver it itself, which saves waking a second thread for every
/// sample: half of all wake-ups of an idle program.
class MainQueue : public WorkQueue {
public:
  /// Announces a thread that calls `help` after each of its tasks, so that what it posts need not
  /// wake the loop. Any thread.
  virtual void addHelper(std::thread::id thread) = 0;

  /// Withdraws the announcement. Any thread.
  virtual void removeHelper(std::thread::id thread) = 0;

  /// Runs what is ready if the turn is free, else sees to it that its holder does. Never called
  /// from inside a task of this queue.
  virtual void help() = 0;
};

} // namespace tidewell
