#include "sampling/NetworkStatus.h"

#include "sampling/SamplerState.h"

#include <gtest/gtest.h>

namespace tidewell::test {
namespace {

NetworkStatus statusFor(bool connected, double loss, double latency) {
  SamplerState state;
  state.isConnected = connected;
  state.packetLossPercent.set(loss);
  state.latencyMs.set(latency);
  return state.currentStatus();
}

TEST(NetworkStatusTest, LooksAtTheConnectionFirst) {
  EXPECT_EQ(statusFor(false, 0.0, 10.0), NetworkStatus::down);
  EXPECT_EQ(statusFor(false, 100.0, 500.0), NetworkStatus::down);
}

TEST(NetworkStatusTest, ComparesStrictly) {
  EXPECT_EQ(statusFor(true, 5.0, 100.0), NetworkStatus::good);
  EXPECT_EQ(statusFor(true, 5.000001, 0.0), NetworkStatus::degraded);
  EXPECT_EQ(statusFor(true, 0.0, 50.0), NetworkStatus::excellent);
  EXPECT_EQ(statusFor(true, 0.0, 50.1), NetworkStatus::good);
  EXPECT_EQ(statusFor(true, 0.0, 100.1), NetworkStatus::degraded);
}

TEST(NetworkStatusTest, IgnoresThroughputAndJitter) {
  SamplerState state;
  EXPECT_EQ(state.currentStatus(), NetworkStatus::excellent);
  state.currentDownloadBytesPerSec.set(5'000'000'000);
  state.jitterMs.set(900.0);
  EXPECT_EQ(state.currentStatus(), NetworkStatus::excellent);
}

TEST(NetworkStatusTest, HasItsNamesInOrderAndIsMadeFromThemAlone) {
  for (const auto& [status, name] :
       {std::pair(NetworkStatus::excellent, "excellent"), std::pair(NetworkStatus::good, "good"),
        std::pair(NetworkStatus::degraded, "degraded"), std::pair(NetworkStatus::down, "down")}) {
    EXPECT_EQ(rawValue(status), name);
    EXPECT_EQ(networkStatus(name), status);
  }
  EXPECT_LT(NetworkStatus::excellent, NetworkStatus::good);
  EXPECT_LT(NetworkStatus::degraded, NetworkStatus::down);
  for (const char* text : {"Down", "", "down ", "great"}) {
    EXPECT_EQ(networkStatus(text), std::nullopt) << text;
  }
}

TEST(NetworkSnapshotTest, IsEqualToItselfAlone) {
  const NetworkSnapshot first(1.0, 2, 3, 4.0, 5.0, 6.0);
  const NetworkSnapshot second(1.0, 2, 3, 4.0, 5.0, 6.0);
  EXPECT_EQ(first, first);
  EXPECT_FALSE(first == second);
  EXPECT_NE(first.id(), second.id());
  EXPECT_EQ(first.timestamp(), 1.0);
  EXPECT_EQ(first.downloadBytesPerSec(), 2);
  EXPECT_EQ(first.uploadBytesPerSec(), 3);
  EXPECT_EQ(first.latencyMs(), 4.0);
  EXPECT_EQ(first.jitterMs(), 5.0);
  EXPECT_EQ(first.packetLossPercent(), 6.0);
}

} // namespace
} // namespace tidewell::test
