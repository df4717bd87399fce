#pragma once

#include <functional>
#include <memory>
#include <string>

namespace tidewell {

/// A span of time in seconds.
using Seconds = double;

/// One piece of work handed to a queue.
using Task = std::function<void()>;

/// A running timer. Destroying it cancels it: no firing begins afterwards on its own queue; a
/// firing that is already running on another thread runs to its end.
class Timer {
public:
  Timer() = default;
  Timer(const Timer&) = delete;
  Timer& operator=(const Timer&) = delete;
  virtual ~Timer() = default;
};

/// Runs tasks. Any thread may call any member.
///
/// A serial queue runs one task at a time, in the order in which they were posted or fell due.
class WorkQueue {
public:
  WorkQueue() = default;
  WorkQueue(const WorkQueue&) = delete;
  WorkQueue& operator=(const WorkQueue&) = delete;
  virtual ~WorkQueue() = default;

  /// Appends a task. It never runs inside this call.
  virtual void post(Task task) = 0;

  /// Appends a task once the delay has passed; at once when the delay is not a positive number.
  virtual void postAfter(Seconds delay, Task task) = 0;

  /// Starts a timer that falls due `first` seconds from now and then every `period` seconds,
  /// without leeway. Firings that were missed (the queue was busy, the machine slept) are made up
  /// by a single one, and the later ones keep to the original grid. A `period` that is not above
  /// zero is taken as one that never ends, so the timer fires once.
  [[nodiscard]] virtual std::unique_ptr<Timer> repeat(Seconds first, Seconds period, Task task) = 0;

  /// Whether the caller is running as a task of this queue.
  [[nodiscard]] virtual bool isCurrent() const = 0;
};

/// The queues of the process.
class Scheduler {
public:
  Scheduler() = default;
  Scheduler(const Scheduler&) = delete;
  Scheduler& operator=(const Scheduler&) = delete;
  virtual ~Scheduler() = default;

  /// The serial queue on which every published value is written and observed: the "main thread".
  [[nodiscard]] virtual WorkQueue& main() = 0;

  /// A concurrent queue for work that belongs to no service's own queue.
  [[nodiscard]] virtual WorkQueue& background() = 0;

  /// A new serial queue for blocking work, at utility priority. `label` names its thread.
  /// Tasks still waiting when the queue is destroyed are dropped; the scheduler outlives its
  /// queues.
  [[nodiscard]] virtual std::unique_ptr<WorkQueue> makeSerialQueue(std::string label) = 0;
};

} // namespace tidewell
