#pragma once

#include "base/Scheduler.h"

namespace tidewell {

/// When the next pair of probes is due: at most 20 pairs a second, three in a round trip, and never
/// more than what five percent of the line carry. Pure.
class ProbePace {
public:
  /// A foreign probe has met this round trip and moved this many bytes, both ways together.
  void addProbe(Seconds roundTrip, double bytes);

  /// Between two pairs on a line of this goodput; days on one that moves nothing.
  [[nodiscard]] Seconds interval(double bytesPerSecond) const;

private:
  double m_costs = 0.0;
  double m_probes = 0.0;
  Seconds m_roundTrip = 0.0; // the latest
};

} // namespace tidewell
