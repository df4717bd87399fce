#pragma once

#include "sampling/NetworkSnapshot.h"

#include <QString>

namespace tidewell {

/// A throughput chart in words: current, average and peak rate of both directions.
[[nodiscard]] QString graphSummary(const SnapshotList& snapshots);

} // namespace tidewell
