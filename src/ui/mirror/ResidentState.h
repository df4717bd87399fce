#pragma once

#include "base/Published.h"
#include "connectivity/MonitorState.h"
#include "processes/TrackerState.h"
#include "sampling/SamplerState.h"
#include "speedtest/SpeedTestState.h"

#include <string>

namespace tidewell {

/// What the resident publishes, as views see it. Main thread.
struct ResidentState {
  SamplerState sampler;
  MonitorState monitor;
  TrackerState tracker;
  SpeedTestState speedTest;
  /// The item's text.
  Published<std::string> menubarText{std::string("↓-- ↑--")};
  /// Whether the resident runs; while it does not, the rest keeps its last values.
  Published<bool> isThere{true};
};

} // namespace tidewell
