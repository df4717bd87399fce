#pragma once

namespace tidewell {

class AppSettings;
class DefaultsStore;
struct MonitorState;
struct SamplerState;
struct SpeedTestState;
struct TrackerState;

/// What the resident shows of itself. Borrowed.
struct ResidentSources {
  SamplerState& sampler;
  MonitorState& monitor;
  TrackerState& tracker;
  SpeedTestState& speedTest;
  const AppSettings& settings;
  DefaultsStore& defaults;
};

} // namespace tidewell
