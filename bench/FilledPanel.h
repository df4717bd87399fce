#pragma once

#include "connectivity/MonitorState.h"
#include "sampling/SamplerState.h"
#include "speedtest/SpeedTestState.h"
#include "ui/panel/PopoverView.h"

#include <cstdint>
#include <memory>

namespace tidewell::bench {

/// Different samples. The sampler keeps 300.
inline SnapshotList fullHistory(std::int64_t count = 300) {
  SnapshotList list;
  for (std::int64_t index = 0; index < count; ++index) {
    const std::int64_t rate = 1'000'000 + index * 7'919'000 % 9'000'000;
    list.push_back(std::make_shared<const NetworkSnapshot>(1e9 + 2.0 * static_cast<double>(index),
                                                           rate, rate / 3, 20.0, 1.0, 0.0));
  }
  return list;
}

/// A panel with all values set.
struct FilledPanel {
  SamplerState sampler;
  MonitorState monitor;
  SpeedTestState speedTest;
  PopoverView view{{sampler, monitor, speedTest}, {}, Backdrop::translucent};

  FilledPanel() {
    sampler.currentDownloadBytesPerSec.set(8'412'000);
    sampler.snapshots.set(fullHistory());
    speedTest.lastResult.set(SpeedTestResult{1.7e9, 245.6, 19.2, 812});
    view.show();
  }
};

} // namespace tidewell::bench
