#pragma once

#include "base/Async.h"

#include <deque>
#include <optional>
#include <string_view>

namespace tidewell {

class ChildProcess;

/// Latency and jitter in milliseconds, loss in percent (0 to 100), at the time of a sample.
struct LineQuality {
  double latencyMs = 0.0;
  double jitterMs = 0.0;
  double packetLossPercent = 0.0;
};

/// Measures round trips to a public address and keeps the window for the jitter.
///
/// Loss is a leaky estimate: +10 points for each failed probe, -5 for each successful one.
class LatencyProbe {
public:
  /// One echo request to Cloudflare's public resolver, an anycast address and therefore near.
  static constexpr const char* target = "1.1.1.1";

  /// Borrows the runner of the tools.
  explicit LatencyProbe(ChildProcess& children) : m_children(children) {}

  /// Runs one probe and returns the quality derived from `carried`. A failed probe gives latency
  /// 0.0 and keeps the jitter.
  [[nodiscard]] Async<LineQuality> probe(LineQuality carried);

  /// Parses the latency in milliseconds from ping's output; nullopt without a reply. A reply whose
  /// time is not a number counts as 0.0.
  [[nodiscard]] static std::optional<double> parseOutput(std::string_view output);

private:
  [[nodiscard]] Async<std::optional<double>> measureLatency();

  ChildProcess& m_children;
  std::deque<double> m_latencySamples; // milliseconds, oldest first, successful probes only
};

} // namespace tidewell
