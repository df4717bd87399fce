#pragma once

#include "base/Published.h"

namespace tidewell {

/// What the connectivity monitor publishes. Written and observed on the main thread.
struct MonitorState {
  /// Whether the machine is online. Optimistic until the first report.
  Published<bool> isConnected{true};
};

} // namespace tidewell
