#include "helpers/networkQuality/Goodput.h"

#include <optional>

namespace tidewell {

namespace {

// A modem of the last century is faster than this.
constexpr double stalledBytesPerSecond = 1000.0;

} // namespace

Goodput::Goodput(Seconds now, std::uint64_t bytes) : m_points{{now, bytes}} {}

void Goodput::endInterval(Seconds now, std::uint64_t bytes) {
  m_points.push_back({now, bytes});
  m_averages.add(intervals() >= averageDistance ? std::optional(current()) : std::nullopt);
}

double Goodput::current() const { return rateSince(lastIndex(averageDistance)); }

double Goodput::capacity() const { return rateSince(windowIndex()); }

bool Goodput::isStalled() const {
  return intervals() >= averageDistance && current() < stalledBytesPerSecond;
}

std::size_t Goodput::lastIndex(std::size_t intervalsAgo) const {
  return intervals() > intervalsAgo ? intervals() - intervalsAgo : 0;
}

std::size_t Goodput::windowIndex() const {
  return isSaturated() ? m_averages.steadySince() - averageDistance : lastIndex(averageDistance);
}

double Goodput::rateSince(std::size_t index) const {
  const Point& begin = m_points[index];
  const Point& end = m_points.back();
  const double bytes = static_cast<double>(end.bytes) - static_cast<double>(begin.bytes);
  return end.time > begin.time ? bytes / (end.time - begin.time) : 0.0;
}

} // namespace tidewell
