#pragma once

#include "sampling/NetworkSnapshot.h"

#include <QString>

#include <cstdint>
#include <string>

namespace tidewell {

/// A throughput chart in words: current, average and peak rate of both directions.
[[nodiscard]] QString graphSummary(const SnapshotList& snapshots);

/// Mean download rate of the samples in bytes per second; 0 without any. Aborts when the sum of
/// the rates does not fit.
[[nodiscard]] double averageDownloadBytes(const SnapshotList& snapshots);

/// The largest download rate in bytes per second; 0 without samples.
[[nodiscard]] std::int64_t peakDownloadBytes(const SnapshotList& snapshots);

/// Text of the sum of the rates of both directions, one term per sample: the length of the
/// interval plays no part. Aborts when the sum does not fit.
[[nodiscard]] std::string totalTransferred(const SnapshotList& snapshots);

} // namespace tidewell
