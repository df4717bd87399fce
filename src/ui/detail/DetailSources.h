#pragma once

namespace tidewell {

struct MonitorState;
struct SamplerState;
struct SpeedTestState;
struct TrackerState;

/// What the details show. The states outlive the views.
struct DetailSources {
  SamplerState& sampler;
  MonitorState& monitor;
  TrackerState& tracker;
  SpeedTestState& speedTest;
};

} // namespace tidewell
