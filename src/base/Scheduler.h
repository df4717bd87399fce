#pragma once

#include "base/Async.h"

#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

namespace tidewell {

/// A span of time in seconds.
using Seconds = double;

/// One piece of work handed to a queue: a function, or a coroutine that may wait.
class Task {
public:
  template <class Function>
  requires(!std::is_same_v<std::remove_cvref_t<Function>, Task>) Task(Function function)
      : m_begin(beginning(std::move(function))) {}

  /// Runs the function, or gives the coroutine, which has not begun.
  Async<> operator()() const { return m_begin(); }

private:
  template <class Function> static std::function<Async<>()> beginning(Function function) {
    if constexpr (std::is_same_v<std::invoke_result_t<Function&>, Async<>>) {
      return function;
    } else {
      return [function = std::move(function)]() mutable {
        function();
        return Async<>();
      };
    }
  }

  std::function<Async<>()> m_begin;
};

/// Runs a task that must not wait; aborts when it does.
void runAtOnce(const Task& task);

/// A running timer. Destroying it cancels it: no firing begins afterwards.
class Timer {
public:
  Timer() = default;
  Timer(const Timer&) = delete;
  Timer& operator=(const Timer&) = delete;
  virtual ~Timer() = default;
};

/// Runs tasks on the program's one thread.
///
/// A serial queue runs one task at a time, in the order in which they were posted or fell due.
/// While a coroutine of the queue waits, the queue is busy.
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
};

/// The queues of the process.
class Scheduler {
public:
  Scheduler() = default;
  Scheduler(const Scheduler&) = delete;
  Scheduler& operator=(const Scheduler&) = delete;
  virtual ~Scheduler() = default;

  /// The serial queue on which every published value is written and observed. Its tasks never wait.
  [[nodiscard]] virtual WorkQueue& main() = 0;

  /// A concurrent queue for work that belongs to no service's own queue: its tasks wait beside each
  /// other.
  [[nodiscard]] virtual WorkQueue& background() = 0;

  /// A new serial queue for tasks that wait, named `label`. Destroying the queue ends its tasks
  /// where they wait and drops those that have not begun. The scheduler outlives its queues.
  [[nodiscard]] virtual std::unique_ptr<WorkQueue> makeSerialQueue(std::string label) = 0;
};

} // namespace tidewell
