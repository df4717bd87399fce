#include "helpers/networkQuality/MovingAverages.h"

#include "helpers/networkQuality/Statistics.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace tidewell {

namespace {

constexpr double tolerance = 0.05;

// With less, also lines whose queue is full in a second would be measured for seconds more.
constexpr double farthest = 0.08;
constexpr std::size_t driftDistance = averageDistance + 1;

bool isFarOneWay(std::span<const double> averages) {
  const bool isOneWay =
      std::ranges::is_sorted(averages) || std::ranges::is_sorted(averages, std::ranges::greater{});
  return isOneWay && std::abs(averages.back() - averages.front()) > farthest * averages.back();
}

} // namespace

void MovingAverages::add(std::optional<double> average) {
  ++m_intervals;
  if (!average) {
    m_last.clear();
    m_steadySince = 0;
    return;
  }
  m_last.push_back(*average);
  if (m_last.size() > driftDistance) {
    m_last.erase(m_last.begin());
  }
  if (m_last.size() < averageDistance || !tidewell::isSteady(last(averageDistance), tolerance)) {
    m_steadySince = 0;
  } else if (m_steadySince == 0) {
    m_steadySince = m_intervals;
  }
}

bool MovingAverages::isDrifting() const {
  return m_last.size() >= averageDistance &&
         (isFarOneWay(last(averageDistance)) || isFarOneWay(m_last));
}

std::span<const double> MovingAverages::last(std::size_t count) const {
  return std::span(m_last).last(count);
}

} // namespace tidewell
