#pragma once

#include "base/Ticks.h"

#include <algorithm>
#include <chrono>
#include <cstdint>

namespace tidewell::test {

/// When a repeating timer must fire: on a fixed grid. One firing makes up for all missed points as
/// soon as the queue is free.
class TimerGrid {
public:
  TimerGrid(Ticks now, double first, double period)
      : m_first(now + span(first)),
        m_period(std::max(span(period), Ticks(std::chrono::milliseconds(1)))) {}

  /// When the next firing is due.
  [[nodiscard]] Ticks next() const { return m_first + m_fired * m_period; }

  /// Whether the timer may fire at `now` on a queue that was busy until `free`.
  [[nodiscard]] bool mayFire(Ticks now, Ticks free) const {
    return next() == now || (next() < now && free == now);
  }

  /// Counts a firing at `now`, which makes up for all earlier points.
  void fire(Ticks now) { m_fired = (now - m_first) / m_period + 1; }

private:
  static Ticks span(double seconds) {
    constexpr double century = 36525.0 * 86400.0;
    return Ticks(static_cast<std::int64_t>(std::min(seconds, century) * 1e9));
  }

  Ticks m_first;
  Ticks m_period;
  std::int64_t m_fired = 0;
};

} // namespace tidewell::test
