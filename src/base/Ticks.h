#pragma once

#include "base/Scheduler.h"

#include <chrono>

namespace tidewell {

/// A point on, or a span of, a clock that only moves forward and stands still while the machine
/// sleeps. Its origin is arbitrary.
using Ticks = std::chrono::nanoseconds;

/// The span, which is zero when it is not a positive number and a hundred years at the most.
[[nodiscard]] Ticks toTicks(Seconds span);

/// The period of a repeating timer: zero (never again) when it is not a positive number, else
/// between a millisecond and a hundred years.
[[nodiscard]] Ticks toPeriod(Seconds period);

} // namespace tidewell
