#include "helpers/networkQuality/Statistics.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <numeric>

namespace tidewell {
namespace {

constexpr double tolerance = 0.05;

// Less would prolong the measurement of lines whose queue fills within a second.
constexpr double farthest = 0.08;
constexpr std::size_t driftDistance = averageDistance + 1;

bool isFarOneWay(std::span<const double> averages) {
  const bool isOneWay =
      std::ranges::is_sorted(averages) || std::ranges::is_sorted(averages, std::ranges::greater{});
  return isOneWay && std::abs(averages.back() - averages.front()) > farthest * averages.back();
}

} // namespace

double mean(std::span<const double> values) {
  if (values.empty()) {
    return 0.0;
  }
  return std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
}

double trimmedMean(std::vector<double> values) {
  const std::size_t kept =
      std::min(values.size(), std::max<std::size_t>(values.size() * 95 / 100, 1));
  std::sort(values.begin(), values.end());
  return mean(std::span(values).first(kept));
}

bool isSteady(std::span<const double> values, double tolerance) {
  if (values.empty()) {
    return false;
  }
  const double middle = mean(values);
  double squares = 0.0;
  for (const double value : values) {
    squares += (value - middle) * (value - middle);
  }
  return std::sqrt(squares / static_cast<double>(values.size())) < tolerance * values.back();
}

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
