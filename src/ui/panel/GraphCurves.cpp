#include "ui/panel/GraphCurves.h"

#include <algorithm>

namespace tidewell {

double megabits(std::int64_t bytesPerSec) {
  return static_cast<double>(bytesPerSec) * 8.0 / 1'000'000.0;
}

double topOfScale(const SnapshotList& snapshots) {
  std::int64_t largest = 0;
  for (const auto& snapshot : snapshots) {
    largest = std::max({largest, snapshot->downloadBytesPerSec(), snapshot->uploadBytesPerSec()});
  }
  return megabits(largest);
}

GraphCurves::GraphCurves(const SnapshotList& snapshots, const QRectF& plot) {
  const double top = topOfScale(snapshots);
  const double perMegabit = top > 0.0 ? plot.height() / top : 0.0;
  const auto gaps = static_cast<double>(snapshots.size()) - 1.0;
  const double step = gaps > 0.0 ? plot.width() / gaps : 0.0;
  const auto heightOf = [&](std::int64_t rate) {
    return plot.bottom() - std::max(megabits(rate), 0.0) * perMegabit;
  };
  double x = plot.left();
  for (const auto& snapshot : snapshots) {
    download << QPointF(x, heightOf(snapshot->downloadBytesPerSec()));
    upload << QPointF(x, heightOf(snapshot->uploadBytesPerSec()));
    x += step;
  }
}

} // namespace tidewell
