#pragma once

#include "processes/ProcessUsage.h"
#include "sampling/NetworkSnapshot.h"
#include "speedtest/SpeedTestState.h"

#include <QVariant>

#include <cstddef>
#include <optional>
#include <vector>

namespace tidewell {

/// As many as the resident keeps.
inline constexpr std::size_t mostMirroredSamples = 300;

/// Values of the resident's properties. What has another type than documented reads as empty; of
/// longer lists than the resident keeps, the newest samples and the first programs are read.
[[nodiscard]] SnapshotList readSamples(const QVariant& value);
[[nodiscard]] std::vector<ProcessUsage> readProcesses(const QVariant& value);
[[nodiscard]] std::optional<SpeedTestResult> readSpeedTest(const QVariant& value);

} // namespace tidewell
