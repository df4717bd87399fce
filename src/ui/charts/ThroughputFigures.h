#pragma once

#include "sampling/NetworkSnapshot.h"

#include <QString>

#include <cstdint>
#include <string>

namespace tidewell {

/// What charts without samples say.
[[nodiscard]] QString noSamplesText();

/// Describes the samples in words: current, average and peak rate of both directions.
[[nodiscard]] QString graphSummary(const SnapshotList& snapshots);

/// Adds the top of a chart's scale to its description, if there is anything on it. The scale begins
/// at 0.
[[nodiscard]] QString withScale(const QString& summary, const QString& top);

/// Mean download rate in bytes per second, or 0 without samples. Aborts if the sum overflows.
[[nodiscard]] double averageDownloadBytes(const SnapshotList& snapshots);

/// The largest download rate in bytes per second, or 0 without samples.
[[nodiscard]] std::int64_t peakDownloadBytes(const SnapshotList& snapshots);

/// The sum of all rates of both directions as text, regardless of the sampling interval. Aborts if
/// the sum overflows.
[[nodiscard]] std::string totalTransferred(const SnapshotList& snapshots);

} // namespace tidewell
