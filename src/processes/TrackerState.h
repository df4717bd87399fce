#pragma once

#include "base/Published.h"
#include "processes/ProcessUsage.h"

#include <vector>

namespace tidewell {

/// What the process tracker publishes.
struct TrackerState {
  /// At most ten programs, heaviest first.
  Published<std::vector<ProcessUsage>> processes;
};

} // namespace tidewell
