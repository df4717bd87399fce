#pragma once

#include "base/Interface.h"

#include "base/Async.h"

#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

namespace tidewell {

/// A span of time in seconds.
using Seconds = double;

/// A function, or a coroutine that may wait.
class Task {
public:
  template <class Function>
  requires(!std::is_same_v<std::remove_cvref_t<Function>, Task>) Task(Function function)
      : m_begin(beginning(std::move(function))) {}

  /// Runs the function, or returns the coroutine, not yet started.
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

/// Runs a task that must not wait; aborts if it does.
void runAtOnce(const Task& task);

/// A running timer. Destroying it cancels it; it does not fire afterwards.
class Timer : public Interface {
public:
};

/// Runs tasks on the program's one thread.
///
/// A serial queue runs one task at a time, in the order in which they were posted or fell due.
/// While a coroutine of the queue waits, the queue is busy.
class WorkQueue : public Interface {
public:
  /// Appends a task. It never runs inside this call.
  virtual void post(Task task) = 0;

  /// Appends a task after the delay; at once if the delay is not a positive number.
  virtual void postAfter(Seconds delay, Task task) = 0;

  /// Starts a timer that falls due after `first` seconds and then every `period` seconds, without
  /// leeway. Firings missed while the queue was busy or the machine slept are made up by a single
  /// one; later ones keep to the original grid. If `period` is not positive, the timer fires once.
  [[nodiscard]] virtual std::unique_ptr<Timer> repeat(Seconds first, Seconds period, Task task) = 0;
};

/// The queues of the process.
class Scheduler : public Interface {
public:
  /// The serial queue on which every published value is written and observed. Its tasks never wait.
  [[nodiscard]] virtual WorkQueue& main() = 0;

  /// A concurrent queue for work that belongs to no service: its tasks wait independently.
  [[nodiscard]] virtual WorkQueue& background() = 0;

  /// A new serial queue named `label`. Destroying it ends its waiting tasks and drops those that
  /// have not begun. The scheduler outlives its queues.
  [[nodiscard]] virtual std::unique_ptr<WorkQueue> makeSerialQueue(std::string label) = 0;
};

} // namespace tidewell
