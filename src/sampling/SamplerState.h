#pragma once

#include "base/Published.h"
#include "sampling/NetworkSnapshot.h"
#include "sampling/NetworkStatus.h"

#include <cstdint>

namespace tidewell {

/// What the sampler publishes.
struct SamplerState {
  Published<std::int64_t> currentDownloadBytesPerSec{0};
  Published<std::int64_t> currentUploadBytesPerSec{0};
  /// Milliseconds; 0.0 before the first probe and after a failed one.
  Published<double> latencyMs{0.0};
  Published<double> jitterMs{0.0};
  /// An estimate in percent, 0 to 100.
  Published<double> packetLossPercent{0.0};
  /// The samples of the session, at most `BandwidthSampler::maxSnapshots`.
  Published<SnapshotList> snapshots;
  /// Whether the machine is online; set by the application from the connectivity monitor.
  bool isConnected = true;

  /// The connection's quality by the latest published values.
  [[nodiscard]] NetworkStatus currentStatus() const;
};

} // namespace tidewell
