#pragma once

#include "sampling/NetworkSnapshot.h"

#include <QString>

#include <cstdint>
#include <string>

namespace tidewell {

/// Describes the samples in words: current, average and peak rate of both directions.
[[nodiscard]] QString graphSummary(const SnapshotList& snapshots);

/// Mean download rate in bytes per second, or 0 without samples. Aborts if the sum overflows.
[[nodiscard]] double averageDownloadBytes(const SnapshotList& snapshots);

/// The largest download rate in bytes per second, or 0 without samples.
[[nodiscard]] std::int64_t peakDownloadBytes(const SnapshotList& snapshots);

/// The sum of all rates of both directions as text, regardless of the sampling interval. Aborts if
/// the sum overflows.
[[nodiscard]] std::string totalTransferred(const SnapshotList& snapshots);

} // namespace tidewell
