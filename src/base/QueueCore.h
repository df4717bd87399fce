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

/// The order of work in a queue: what is ready, what falls due when. Pure: the time is handed in,
/// running the work is the owner's business.
///
/// Tasks become ready in the order in which they were posted or fell due. A timer that falls due
/// while its last firing still waits, or several times over, becomes ready once; its next firing
/// is the first point of its grid after the moment at which the last one was taken.
class QueueCore {
public:
  using TimerId = std::uint64_t;
  using Work = std::shared_ptr<const Task>;

  /// Makes a task ready.
  void post(Task task);

  /// Makes a task ready at `due`, then every `period`; never again when `period` is zero.
  TimerId add(Ticks due, Ticks period, Task task);

  /// Forgets a timer, a firing that waits included. Does nothing when it is gone.
  void cancel(TimerId timer);

  /// Removes and gives back the first piece of work that is ready at `now`; null when none is.
  [[nodiscard]] Work take(Ticks now);

  /// Whether `take` would give work.
  [[nodiscard]] bool isReady(Ticks now);

  /// When the next timer falls due; none without timers. Says nothing of what is ready already.
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
