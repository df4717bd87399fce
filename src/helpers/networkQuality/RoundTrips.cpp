#include "helpers/networkQuality/RoundTrips.h"

#include "helpers/networkQuality/Statistics.h"

#include <array>
#include <cstddef>
#include <utility>

namespace tidewell {

namespace {

constexpr std::size_t fewest = 2;
// Beyond this it was no network that answered.
constexpr double mostPerMinute = 6e7;

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

} // namespace tidewell
