#include "base/Ticks.h"

#include <algorithm>

namespace tidewell {
namespace {

constexpr Seconds century = 100.0 * 365.25 * 86400.0;
constexpr Ticks shortestPeriod = std::chrono::milliseconds(1);

} // namespace

Ticks toTicks(Seconds span) {
  if (!(span > 0.0)) {
    return Ticks::zero();
  }
  const std::chrono::duration<double> bounded(std::min(span, century));
  return std::chrono::duration_cast<Ticks>(bounded);
}

Ticks toPeriod(Seconds period) {
  return period > 0.0 ? std::max(toTicks(period), shortestPeriod) : Ticks::zero();
}

} // namespace tidewell
