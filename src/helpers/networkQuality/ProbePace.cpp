#include "helpers/networkQuality/ProbePace.h"

#include <algorithm>

namespace tidewell {

namespace {

constexpr double mostPairsPerSecond = 25.0;
constexpr double shareOfLine = 0.05;
// The estimates of the responsiveness draft; the first one holds until a probe has ended.
constexpr double foreignBytes = 5000.0;
constexpr double selfBytes = 1000.0;
constexpr Seconds longest = 1e6;

} // namespace

void ProbePace::addCost(double bytes) {
  m_costs += bytes;
  m_probes += 1.0;
}

Seconds ProbePace::interval(double bytesPerSecond) const {
  const double pair = (m_probes > 0.0 ? m_costs / m_probes : foreignBytes) + selfBytes;
  const double affordable = bytesPerSecond * shareOfLine / pair;
  return affordable > 1.0 / longest ? 1.0 / std::min(affordable, mostPairsPerSecond) : longest;
}

} // namespace tidewell
