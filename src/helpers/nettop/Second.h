#pragma once

#include <ctime>

namespace tidewell::nettop {

/// The second that is measured, by a clock that nobody sets. It begins with the object.
class Second {
public:
  Second() { ::clock_gettime(CLOCK_MONOTONIC, &m_end); }

  /// Sleeps until a second after the beginning.
  void wait() {
    timespec end = m_end;
    ++end.tv_sec;
    while (::clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &end, nullptr) != 0) {
    }
  }

private:
  timespec m_end{};
};

} // namespace tidewell::nettop
