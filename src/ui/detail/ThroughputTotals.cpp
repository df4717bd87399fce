#include "ui/detail/ThroughputTotals.h"

#include "base/Checked.h"
#include "processes/ProcessUsage.h"

#include <algorithm>

namespace tidewell {

double averageDownloadBytes(const SnapshotList& snapshots) {
  if (snapshots.empty()) {
    return 0.0;
  }
  std::int64_t sum = 0;
  for (const auto& snapshot : snapshots) {
    sum = checkedAdd(sum, snapshot->downloadBytesPerSec());
  }
  return static_cast<double>(sum) / static_cast<double>(snapshots.size());
}

std::int64_t peakDownloadBytes(const SnapshotList& snapshots) {
  const auto largest =
      std::max_element(snapshots.begin(), snapshots.end(), [](const auto& left, const auto& right) {
        return left->downloadBytesPerSec() < right->downloadBytesPerSec();
      });
  return largest == snapshots.end() ? 0 : (*largest)->downloadBytesPerSec();
}

std::string totalTransferred(const SnapshotList& snapshots) {
  std::int64_t sum = 0;
  for (const auto& snapshot : snapshots) {
    sum =
        checkedAdd(sum, checkedAdd(snapshot->downloadBytesPerSec(), snapshot->uploadBytesPerSec()));
  }
  return ProcessUsage::formatBytesTotal(sum);
}

} // namespace tidewell
