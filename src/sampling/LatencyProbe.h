#pragma once

#include "base/Async.h"

#include <deque>
#include <optional>
#include <string_view>

namespace tidewell {

class ChildProcess;

/// Latency, jitter (milliseconds) and loss (percent, 0 to 100) as known at a sample.
struct LineQuality {
  double latencyMs = 0.0;
  double jitterMs = 0.0;
  double packetLossPercent = 0.0;
};

/// Measures round trips to a public address and keeps the window from which jitter is taken.
///
/// Loss is a leaky estimate: 10 points up with each failed probe, 5 down with each successful one.
class LatencyProbe {
public:
  /// One echo request to Cloudflare's public resolver (an anycast address, as near as they come).
  static constexpr const char* target = "1.1.1.1";

  /// Borrows the runner of the tools.
  explicit LatencyProbe(ChildProcess& children) : m_children(children) {}

  /// Runs one probe and gives the quality that follows from `carried`. A failed probe has latency
  /// 0.0 and leaves the jitter as it was.
  [[nodiscard]] Async<LineQuality> probe(LineQuality carried);

  /// The latency in milliseconds that ping's output tells; none when there was no reply. A reply
  /// whose time is no number counts as 0.0.
  [[nodiscard]] static std::optional<double> parseOutput(std::string_view output);

private:
  [[nodiscard]] Async<std::optional<double>> measureLatency();

  ChildProcess& m_children;
  std::deque<double> m_latencySamples; // milliseconds, oldest first, successful probes only
};

} // namespace tidewell
