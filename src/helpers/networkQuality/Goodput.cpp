#include "helpers/networkQuality/Goodput.h"

#include <algorithm>
#include <limits>
#include <optional>

namespace tidewell {
namespace {

// Slower than any modem.
constexpr double stalledBytesPerSecond = 1000.0;

constexpr int refinements = 3;

} // namespace

Goodput::Goodput(Seconds now, std::uint64_t bytes)
    : m_points{{now, bytes}}, m_samples{{now, bytes}} {}

void Goodput::endInterval(Seconds now, std::uint64_t bytes) {
  m_points.push_back({now, bytes});
  sample(now, bytes);
  m_averages.add(intervals() >= averageDistance ? std::optional(current()) : std::nullopt);
}

double Goodput::current() const { return rateSince(lastIndex(averageDistance)); }

double Goodput::capacity() const {
  const Point& first = m_points[windowIndex()];
  const Point& last = m_points.back();
  const Seconds quarter = (last.time - first.time) / 4.0;
  double rate = rateSince(windowIndex());
  for (int round = 0; round < refinements; ++round) {
    const Point begin = fullest(first.time, first.time + quarter, rate);
    const Point end = fullest(last.time - quarter, last.time, rate);
    rate = rateBetween(begin, end);
  }
  return rate;
}

double Goodput::windowBytes() const { return bytesSince(windowIndex()); }

double Goodput::bytesSince(std::size_t index) const {
  return static_cast<double>(m_points.back().bytes - m_points[index].bytes);
}

Seconds Goodput::loadedSince(std::size_t intervals) const {
  const std::size_t begin = isSaturated() ? m_averages.steadySince() - averageDistance : 0;
  return m_points[std::max(begin, filledIndex(intervals))].time;
}

bool Goodput::isStalled() const {
  return intervals() >= averageDistance && current() < stalledBytesPerSecond;
}

std::size_t Goodput::lastIndex(std::size_t intervalsAgo) const {
  return intervals() > intervalsAgo ? intervals() - intervalsAgo : 0;
}

std::size_t Goodput::filledIndex(std::size_t intervalsAgo) const {
  constexpr std::size_t start = averageDistance - 1; // shows TCP's start rather than the line
  std::size_t index = lastIndex(intervalsAgo);
  while (index > start && bytesSince(index) < leastWindow) {
    --index;
  }
  return index;
}

std::size_t Goodput::windowIndex() const {
  return isSaturated() ? m_averages.steadySince() - averageDistance : filledIndex(averageDistance);
}

double Goodput::rateSince(std::size_t index) const {
  return rateBetween(m_points[index], m_points.back());
}

Goodput::Point Goodput::fullest(Seconds begin, Seconds end, double rate) const {
  Point best{begin, 0};
  double most = -std::numeric_limits<double>::infinity();
  for (const Point& point : m_samples) {
    const double ahead = static_cast<double>(point.bytes) - rate * point.time;
    if (point.time >= begin && point.time <= end && ahead > most) {
      best = point;
      most = ahead;
    }
  }
  return best;
}

double Goodput::rateBetween(const Point& begin, const Point& end) {
  const double bytes = static_cast<double>(end.bytes) - static_cast<double>(begin.bytes);
  return end.time > begin.time ? bytes / (end.time - begin.time) : 0.0;
}

} // namespace tidewell
