#pragma once

#include "base/Scheduler.h"

#include <chrono>

namespace tidewell {

/// A time or duration of a monotonic clock that stops while the machine sleeps. Its origin is
/// arbitrary.
using Ticks = std::chrono::nanoseconds;

/// Converts a duration: zero if it is not a positive number, at most a hundred years.
[[nodiscard]] Ticks toTicks(Seconds span);

/// The period of a repeating timer: zero (fires once) if it is not a positive number, else between
/// a millisecond and a hundred years.
[[nodiscard]] Ticks toPeriod(Seconds period);

} // namespace tidewell
