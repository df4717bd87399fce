#pragma once

#include "FilledPanel.h"
#include "processes/TrackerState.h"
#include "ui/detail/DetailWindowView.h"

#include <string>
#include <vector>

namespace tidewell::bench {

/// As many processes as the tracker publishes.
inline std::vector<ProcessUsage> busyPrograms() {
  std::vector<ProcessUsage> list;
  for (std::int32_t index = 0; index < 10; ++index) {
    list.push_back({1000 + index, "program " + std::to_string(index), 4'000'000 / (index + 1),
                    400'000 / (index + 1), 1'000'000'000 / (index + 1), 0.4 / (index + 1)});
  }
  return list;
}

/// The details with all values set.
struct FilledDetails {
  SamplerState sampler;
  MonitorState monitor;
  TrackerState tracker;
  SpeedTestState speedTest;
  Published<bool> isThere{true};
  DetailWindowView view{DetailSources{sampler, monitor, tracker, speedTest, isThere},
                        DetailActions{[] {}, [](const std::string&) {}}};

  FilledDetails() {
    sampler.currentDownloadBytesPerSec.set(8'412'000);
    sampler.snapshots.set(fullHistory());
    tracker.processes.set(busyPrograms());
    speedTest.lastResult.set(SpeedTestResult{1.7e9, 245.6, 19.2, 812});
    view.show();
  }
};

} // namespace tidewell::bench
