#include "ui/panel/GraphSummary.h"

#include "format/SpeedFormatter.h"

#include <algorithm>
#include <cstdint>

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

} // namespace tidewell
