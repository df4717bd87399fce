#pragma once

#include <ctime>

namespace tidewell::nettop {

/// The second that is measured, by a clock that nobody sets. It begins with the object.
class Second {
public:
  Second() { ::clock_gettime(CLOCK_MONOTONIC, &m_beginning); }

  /// Sleeps until so many tenths of it have passed.
  void wait(int tenths = 10) const {
    constexpr long nanoseconds = 1'000'000'000;
    const long since = m_beginning.tv_nsec + tenths * (nanoseconds / 10);
    const timespec until{m_beginning.tv_sec + since / nanoseconds, since % nanoseconds};
    while (::clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &until, nullptr) != 0) {
    }
  }

private:
  timespec m_beginning{};
};

} // namespace tidewell::nettop
