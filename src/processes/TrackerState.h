#pragma once

#include "base/Published.h"
#include "processes/ProcessUsage.h"

#include <vector>

namespace tidewell {

/// What the process tracker publishes.
struct TrackerState {
  /// The heaviest programs, heaviest first, ten at the most.
  Published<std::vector<ProcessUsage>> processes;
};

} // namespace tidewell
