#pragma once

#include "processes/ProcessUsage.h"
#include "sampling/NetworkSnapshot.h"
#include "speedtest/SpeedTestState.h"

#include <optional>
#include <string>
#include <vector>

#include <systemd/sd-bus.h>

namespace tidewell {

/// The types of what is published, as docs/dbus.md describes them.
namespace busTypes {

inline constexpr const char* sample = "dxxddd";
inline constexpr const char* samples = "a(dxxddd)";
inline constexpr const char* processes = "a(isxxxd)";
inline constexpr const char* speedTests = "a(dddx)";

} // namespace busTypes

/// Appends the fields of a sample; negative on failure, as for all below.
int appendSample(sd_bus_message& message, const NetworkSnapshot& sample);

int appendSamples(sd_bus_message& message, const SnapshotList& samples);

int appendProcesses(sd_bus_message& message, const std::vector<ProcessUsage>& processes);

/// Appends an array that holds the result, or nothing.
int appendSpeedTest(sd_bus_message& message, const std::optional<SpeedTestResult>& result);

/// A text that is equal for equal lists.
[[nodiscard]] std::string digestOf(const std::vector<ProcessUsage>& processes);

} // namespace tidewell
