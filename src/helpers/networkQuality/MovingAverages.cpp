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

} // namespace

void MovingAverages::add(std::optional<double> average) {
  ++m_intervals;
  if (!average) {
    m_last.clear();
    m_steadySince = 0;
    return;
  }
  m_last.push_back(*average);
  if (m_last.size() > averageDistance) {
    m_last.erase(m_last.begin());
  }
  if (m_last.size() < averageDistance || !tidewell::isSteady(m_last, tolerance)) {
    m_steadySince = 0;
  } else if (m_steadySince == 0) {
    m_steadySince = m_intervals;
  }
}

bool MovingAverages::isDrifting() const {
  const bool isOneWay =
      std::ranges::is_sorted(m_last) || std::ranges::is_sorted(m_last, std::ranges::greater{});
  return isOneWay && m_last.size() == averageDistance &&
         std::abs(m_last.back() - m_last.front()) > farthest * m_last.back();
}

} // namespace tidewell
