#include "ui/charts/ThroughputFigures.h"

#include "base/Checked.h"
#include "processes/ProcessUsage.h"
#include "ui/components/ShownText.h"

#include <algorithm>

namespace tidewell {
namespace {

using Rate = std::int64_t (NetworkSnapshot::*)() const;

QString direction(const SnapshotList& snapshots, Rate rate) {
  double average = 0.0;
  std::int64_t peak = 0;
  for (const auto& snapshot : snapshots) {
    const std::int64_t value = (*snapshot.*rate)();
    // Adds shares, because the sum of 300 large rates can exceed an integer.
    average += static_cast<double>(value) / static_cast<double>(snapshots.size());
    peak = std::max(peak, value);
  }
  // As doubles, the largest rates round up to values that no integer holds.
  const bool fits = average < static_cast<double>(peak);
  return translatedText("current %1, average %2, peak %3")
      .arg(rateText((*snapshots.back().*rate)()),
           rateText(fits ? static_cast<std::int64_t>(average) : peak), rateText(peak));
}

} // namespace

QString noSamplesText() { return translatedText("No samples yet"); }

QString withScale(const QString& summary, const QString& top) {
  return summary == noSamplesText() ? summary
                                    : translatedText("%1 Scale from 0 to %2.").arg(summary, top);
}

QString graphSummary(const SnapshotList& snapshots) {
  if (snapshots.empty()) {
    return noSamplesText();
  }
  return translatedText("Download: %1. Upload: %2.")
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
