#pragma once

#include "sampling/NetworkSnapshot.h"

#include <QPolygonF>
#include <QRectF>

namespace tidewell {

/// The curves of a throughput chart: one point per sample, in the order of the samples and evenly
/// spaced whatever their times, the oldest at the left edge and the newest at the right one. Both
/// share one vertical scale, from 0 at the bottom to the largest rate at the top.
struct GraphCurves {
  QPolygonF download;
  QPolygonF upload;

  /// `plot` is where the points lie.
  GraphCurves(const SnapshotList& snapshots, const QRectF& plot);
};

/// The largest rate of either direction, in megabits per second; 0 for no samples.
[[nodiscard]] double topOfScale(const SnapshotList& snapshots);

/// A rate in bytes per second as megabits per second.
[[nodiscard]] double megabits(std::int64_t bytesPerSec);

} // namespace tidewell
