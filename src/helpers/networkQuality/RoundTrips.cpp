#include "helpers/networkQuality/RoundTrips.h"

#include "helpers/networkQuality/Statistics.h"

#include <array>
#include <cstddef>
#include <utility>

namespace tidewell {

namespace {

constexpr std::size_t fewest = 2;

} // namespace

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
  const std::array foreign{trimmedMean(std::move(tcp)), trimmedMean(std::move(tls)),
                           trimmedMean(std::move(http))};
  const RoundTripMeans means{mean(foreign), trimmedMean(std::move(self))};
  return means.foreign > 0.0 && means.self > 0.0 ? std::optional(means) : std::nullopt;
}

} // namespace tidewell
