#pragma once

#include "base/Scheduler.h"

namespace tidewell {

/// When the next pair of probes is due: at most 25 pairs a second, and never more than what five
/// percent of the line carry. Pure.
class ProbePace {
public:
  /// A foreign probe has moved this many bytes, both ways together.
  void addCost(double bytes);

  /// Between two pairs on a line of this goodput; days on one that moves nothing.
  [[nodiscard]] Seconds interval(double bytesPerSecond) const;

private:
  double m_costs = 0.0;
  double m_probes = 0.0;
};

} // namespace tidewell
