#include "helpers/networkQuality/RoundTrips.h"

#include "helpers/networkQuality/Statistics.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace tidewell {
namespace {

constexpr std::size_t fewest = 2;
// Faster than any network.
constexpr double mostPerMinute = 6e7;

constexpr double mostPairsPerSecond = 20.0;
// A queue of half a second does not change in a twentieth of a second.
constexpr double mostPairsPerRoundTrip = 3.0;
constexpr double shareOfLine = 0.05;
// Estimates of the responsiveness draft; the first one is used until a probe has ended.
constexpr double foreignBytes = 5000.0;
constexpr double selfBytes = 1000.0;
constexpr Seconds longest = 1e6;

} // namespace

double RoundTripMeans::perMinute() const {
  const std::array steps{foreign.tcp, foreign.tls, foreign.http};
  return (60.0 / mean(steps) + 60.0 / self) / 2.0;
}

std::optional<RoundTripMeans> RoundTrips::since(Seconds begin) const {
  std::array<std::vector<double>, 4> times;
  auto& [tcp, tls, http, self] = times;
  for (const auto& [time, probe] : m_foreign) {
    if (time >= begin) {
      tcp.push_back(probe.tcp);
      tls.push_back(probe.tls);
      http.push_back(probe.http);
    }
  }
  for (const auto& [time, seconds] : m_self) {
    if (time >= begin) {
      self.push_back(seconds);
    }
  }
  if (tcp.size() < fewest || self.size() < fewest) {
    return std::nullopt;
  }
  const RoundTripMeans means{
      {trimmedMean(std::move(tcp)), trimmedMean(std::move(tls)), trimmedMean(std::move(http))},
      trimmedMean(std::move(self))};
  return means.perMinute() < mostPerMinute ? std::optional(means) : std::nullopt;
}

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
