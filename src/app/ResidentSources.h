#pragma once

namespace tidewell {

class AppSettings;
class PreferencesStore;
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
  PreferencesStore& preferences;
};

} // namespace tidewell
