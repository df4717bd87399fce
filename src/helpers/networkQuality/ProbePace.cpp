#include "helpers/networkQuality/ProbePace.h"

#include <algorithm>

namespace tidewell {

namespace {

constexpr double mostPairsPerSecond = 20.0;
// A queue that takes half a second to pass does not change in a twentieth.
constexpr double mostPairsPerRoundTrip = 3.0;
constexpr double shareOfLine = 0.05;
// The estimates of the responsiveness draft; the first one holds until a probe has ended.
constexpr double foreignBytes = 5000.0;
constexpr double selfBytes = 1000.0;
constexpr Seconds longest = 1e6;

} // namespace

void ProbePace::addProbe(Seconds roundTrip, double bytes) {
  m_roundTrip = roundTrip;
  m_costs += bytes;
  m_probes += 1.0;
}

Seconds ProbePace::interval(double bytesPerSecond) const {
  const double pair = (m_probes > 0.0 ? m_costs / m_probes : foreignBytes) + selfBytes;
  const double affordable = bytesPerSecond * shareOfLine / pair;
  if (affordable <= 1.0 / longest) {
    return longest;
  }
  return std::max(1.0 / std::min(affordable, mostPairsPerSecond),
                  m_roundTrip / mostPairsPerRoundTrip);
}

} // namespace tidewell
