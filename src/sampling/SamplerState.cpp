#include "sampling/SamplerState.h"

namespace tidewell {
namespace {

constexpr double tolerableLossPercent = 5.0;
constexpr double goodLatencyMs = 100.0;
constexpr double excellentLatencyMs = 50.0;

} // namespace

NetworkStatus SamplerState::currentStatus() const {
  if (!isConnected) {
    return NetworkStatus::down;
  }
  if (packetLossPercent.get() > tolerableLossPercent || latencyMs.get() > goodLatencyMs) {
    return NetworkStatus::degraded;
  }
  return latencyMs.get() > excellentLatencyMs ? NetworkStatus::good : NetworkStatus::excellent;
}

} // namespace tidewell
