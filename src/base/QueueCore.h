#pragma once

#include "base/Scheduler.h"
#include "base/Ticks.h"

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <utility>

namespace tidewell {

/// The order of work in a queue: what is ready and what falls due when. Pure: the owner passes the
/// time and runs the work.
///
/// Tasks become ready in the order in which they were posted or fell due. A timer that falls due
/// several times, or while a firing still waits, becomes ready once; it next fires at the first
/// point of its grid after that firing was taken.
class QueueCore {
public:
  using TimerId = std::uint64_t;
  using Work = std::shared_ptr<const Task>;

  /// Makes a task ready.
  void post(Task task);

  /// Makes a task ready at `due`, then every `period`; once if `period` is zero.
  TimerId add(Ticks due, Ticks period, Task task);

  /// Removes a timer and its waiting firing. Does nothing if it is gone.
  void cancel(TimerId timer);

  /// Removes and returns the first work ready at `now`; null if there is none.
  [[nodiscard]] Work take(Ticks now);

  /// Whether `take` would return work.
  [[nodiscard]] bool isReady(Ticks now);

  /// When the next timer falls due; nullopt without timers. Ignores work that is ready already.
  [[nodiscard]] std::optional<Ticks> nextDue() const;

private:
  struct TimedTask {
    Ticks due;
    Ticks period;
    Work work;
  };
  struct Entry {
    Work work; // null for a timer's firing
    std::optional<TimerId> timer;
  };

  void collectDue(Ticks now);
  Work fire(TimerId timer, Ticks now);

  std::deque<Entry> m_ready;
  std::map<TimerId, TimedTask> m_timers;
  std::set<std::pair<Ticks, TimerId>> m_due; // ordered by time, then by age
  TimerId m_nextId = 1;
};

} // namespace tidewell
