#include "ui/charts/ThroughputFigures.h"

#include "base/Checked.h"
#include "format/SpeedFormatter.h"
#include "processes/ProcessUsage.h"

#include <algorithm>

namespace tidewell {

namespace {

using Rate = std::int64_t (NetworkSnapshot::*)() const;

QString words(std::int64_t bytesPerSec) {
  return QString::fromStdString(SpeedFormatter::format(bytesPerSec));
}

QString direction(const SnapshotList& snapshots, Rate rate) {
  double average = 0.0;
  std::int64_t peak = 0;
  for (const auto& snapshot : snapshots) {
    const std::int64_t value = (*snapshot.*rate)();
    // Each share by itself: the sum of 300 large rates would not fit an integer.
    average += static_cast<double>(value) / static_cast<double>(snapshots.size());
    peak = std::max(peak, value);
  }
  // The largest rates round up to doubles that fit no integer.
  const bool fits = average < static_cast<double>(peak);
  return QStringLiteral("current %1, average %2, peak %3")
      .arg(words((*snapshots.back().*rate)()),
           words(fits ? static_cast<std::int64_t>(average) : peak), words(peak));
}

} // namespace

QString graphSummary(const SnapshotList& snapshots) {
  if (snapshots.empty()) {
    return QStringLiteral("No samples yet");
  }
  return QStringLiteral("Download: %1. Upload: %2.")
      .arg(direction(snapshots, &NetworkSnapshot::downloadBytesPerSec),
           direction(snapshots, &NetworkSnapshot::uploadBytesPerSec));
}

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
