#include "app/AppDelegate.h"

#include "alerts/NotificationService.h"
#include "connectivity/NetworkMonitor.h"
#include "processes/ProcessTracker.h"
#include "sampling/BandwidthSampler.h"
#include "settings/AppSettings.h"
#include "support/FakeLoginItem.h"
#include "support/FakeMachine.h"
#include "support/FakePreferencesStore.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

namespace tidewell::test {
namespace {

class AppDelegateTest : public testing::Test {
protected:
  AppDelegateTest() { machine.children.usual.output = FakeChildren::reply("10.0"); }

  FakeMachine machine;
  FakePreferencesStore preferences{machine.scheduler.main()};
  FakeLoginItem loginItem;
  AppSettings settings{preferences, loginItem};
  FakeNotificationCenter center;
  NotificationService notifications{settings, machine.clock, center};
  std::unique_ptr<AppDelegate> delegate = std::make_unique<AppDelegate>(
      machine.platform, AppEnvironment{settings, preferences, center, notifications});

  void launch() {
    delegate->applicationDidFinishLaunching();
    machine.scheduler.settle();
  }
  void report(bool isSatisfied) {
    machine.paths.report({isSatisfied, false, true, false});
    machine.scheduler.advance(1.0);
  }
  std::vector<std::string> sent() const {
    std::vector<std::string> identifiers;
    for (const auto& request : center.requests) {
      identifiers.push_back(request.identifier);
    }
    return identifiers;
  }
  /// Publishes a rate as the sampler does.
  void publishRate(std::int64_t bytesPerSec) {
    delegate->bandwidthSampler().currentDownloadBytesPerSec.set(bytesPerSec);
  }
  void publishLatency(double milliseconds) {
    delegate->bandwidthSampler().latencyMs.set(milliseconds);
  }
  std::size_t runsOf(Tool tool) const {
    return static_cast<std::size_t>(
        std::ranges::count(machine.children.runs, tool, &ToolCall::tool));
  }
};

TEST_F(AppDelegateTest, MakesItsServicesInOrderAndStartsOnlyTheMonitor) {
  EXPECT_EQ(machine.scheduler.labels(), (std::vector<std::string>{"com.halden.tidewell.pathmonitor",
                                                                  "com.halden.tidewell.sampler",
                                                                  "com.halden.tidewell.process"}));
  EXPECT_TRUE(machine.paths.isWatched());
  machine.scheduler.advance(60.0);
  EXPECT_TRUE(delegate->bandwidthSampler().snapshots.get().empty());
  EXPECT_TRUE(machine.children.runs.empty());
}

TEST_F(AppDelegateTest, AsksForPermissionOnceAtLaunch) {
  launch();
  EXPECT_EQ(center.authorizations, 1);
}

TEST_F(AppDelegateTest, PostsNothingWhenItStartsOnline) {
  launch();
  report(true);
  report(true);
  EXPECT_TRUE(sent().empty());
}

TEST_F(AppDelegateTest, NotifiesAtOnceWhenItStartsOffline) {
  report(false);
  launch();
  EXPECT_EQ(sent(), std::vector<std::string>{"connection-lost"});
  EXPECT_FALSE(delegate->bandwidthSampler().isConnected);
}

TEST_F(AppDelegateTest, PostsOneNoticeForEachChangeOfConnectivity) {
  launch();
  report(false);
  report(false);
  report(true);
  report(true);
  EXPECT_EQ(sent(), (std::vector<std::string>{"connection-lost", "connection-restored"}));
  EXPECT_TRUE(delegate->bandwidthSampler().isConnected);
}

TEST_F(AppDelegateTest, KeepsTheSamplerInformedOfConnectivity) {
  launch();
  report(false);
  EXPECT_EQ(delegate->bandwidthSampler().currentStatus(), NetworkStatus::down);
  report(true);
  EXPECT_EQ(delegate->bandwidthSampler().currentStatus(), NetworkStatus::excellent);
}

TEST_F(AppDelegateTest, AlertsOnRatesStrictlyBetweenIdleAndTheThreshold) {
  launch();
  publishRate(1'250);
  publishRate(1'250'000);
  publishRate(0);
  EXPECT_TRUE(sent().empty());
  publishRate(1'251);
  EXPECT_EQ(sent(), std::vector<std::string>{"speed-drop"});
  EXPECT_EQ(center.requests[0].body, "Download speed fell to 0.0 Mbps (threshold: 10 Mbps)");
  machine.clock.jump(61.0);
  publishRate(1'249'999);
  EXPECT_EQ(center.requests.at(1).body, "Download speed fell to 10.0 Mbps (threshold: 10 Mbps)");
}

TEST_F(AppDelegateTest, ReadsTheThresholdsAtEveryValue) {
  launch();
  settings.setSlowSpeedThreshold(1.0);
  publishRate(500'000);
  EXPECT_TRUE(sent().empty());
  settings.setSlowSpeedThreshold(5.0);
  publishRate(500'000);
  EXPECT_EQ(sent().size(), 1U);
  machine.clock.jump(61.0);
  settings.setHighLatencyThreshold(20.0);
  publishLatency(21.0);
  EXPECT_EQ(sent().back(), "high-latency");
}

TEST_F(AppDelegateTest, AlertsOnLatencyStrictlyAboveTheThreshold) {
  launch();
  publishLatency(100.0);
  publishLatency(0.0);
  EXPECT_TRUE(sent().empty());
  publishLatency(100.1);
  EXPECT_EQ(sent(), std::vector<std::string>{"high-latency"});
}

TEST_F(AppDelegateTest, NeverAlertsOnALatencyOfZeroEvenWithANegativeThreshold) {
  settings.setHighLatencyThreshold(-5.0);
  launch();
  publishLatency(0.0);
  EXPECT_TRUE(sent().empty());
}

TEST_F(AppDelegateTest, SamplesAtTheStoredIntervalFromTheLaunch) {
  settings.setRefreshInterval(5.0);
  launch();
  machine.scheduler.advance(20.0);
  EXPECT_EQ(delegate->bandwidthSampler().snapshots.get().size(), 4U);
}

TEST_F(AppDelegateTest, SamplesEveryTwoSecondsWhenNothingIsStored) {
  launch();
  machine.scheduler.advance(20.0);
  EXPECT_EQ(delegate->bandwidthSampler().snapshots.get().size(), 10U);
}

TEST_F(AppDelegateTest, StartsWithTheUsualIntervalWhenTheStoredOneIsAbsurd) {
  for (const double absurd : {0.0, -3.0, std::numeric_limits<double>::quiet_NaN()}) {
    settings.setRefreshInterval(absurd);
    delegate = std::make_unique<AppDelegate>(
        machine.platform, AppEnvironment{settings, preferences, center, notifications});
    launch();
    machine.scheduler.advance(20.0);
    EXPECT_EQ(delegate->bandwidthSampler().snapshots.get().size(), 10U);
  }
}

TEST_F(AppDelegateTest, RestartsTheSamplerOnceForANewInterval) {
  launch();
  machine.scheduler.advance(4.0);
  ASSERT_EQ(delegate->bandwidthSampler().snapshots.get().size(), 2U);
  settings.setRefreshInterval(5.0);
  machine.scheduler.advance(4.9);
  EXPECT_EQ(delegate->bandwidthSampler().snapshots.get().size(), 2U);
  machine.scheduler.advance(0.2);
  EXPECT_EQ(delegate->bandwidthSampler().snapshots.get().size(), 3U);
  machine.scheduler.advance(10.0);
  EXPECT_EQ(delegate->bandwidthSampler().snapshots.get().size(), 5U);
}

TEST_F(AppDelegateTest, KeepsItsIntervalWhenTheStoredOneIsNotPositiveOrGone) {
  settings.setRefreshInterval(1.0);
  launch();
  settings.setRefreshInterval(0.0);
  machine.scheduler.advance(3.0);
  settings.setRefreshInterval(-1.0);
  machine.scheduler.advance(3.0);
  preferences.clear();
  machine.scheduler.advance(4.0);
  EXPECT_EQ(delegate->bandwidthSampler().snapshots.get().size(), 10U);
}

TEST_F(AppDelegateTest, DoesNotRestartForTheValuesThatAreThereAtLaunch) {
  settings.setRefreshInterval(3.0);
  machine.scheduler.settle();
  launch();
  machine.scheduler.advance(2.9);
  machine.scheduler.advance(0.2);
  EXPECT_EQ(delegate->bandwidthSampler().snapshots.get().size(), 1U);
}

TEST_F(AppDelegateTest, TracksProcessesEveryTenSecondsWhateverTheRefreshInterval) {
  settings.setRefreshInterval(1.0);
  launch();
  machine.scheduler.advance(25.0);
  EXPECT_EQ(runsOf(Tool::processTraffic), 3U);
}

TEST_F(AppDelegateTest, StopsAndStartsTrackingWithTheSetting) {
  settings.setTrackPerProcess(false);
  machine.scheduler.settle();
  launch();
  machine.scheduler.advance(30.0);
  EXPECT_EQ(runsOf(Tool::processTraffic), 0U);
  settings.setTrackPerProcess(true);
  machine.scheduler.advance(3.0);
  EXPECT_EQ(runsOf(Tool::processTraffic), 1U);
  settings.setTrackPerProcess(false);
  machine.scheduler.advance(60.0);
  EXPECT_EQ(runsOf(Tool::processTraffic), 1U);
}

TEST_F(AppDelegateTest, StopsBothTimersAndNothingElseAtTheEnd) {
  launch();
  machine.scheduler.advance(10.0);
  delegate->applicationWillTerminate();
  const auto samples = delegate->bandwidthSampler().snapshots.get().size();
  const auto runs = machine.children.runs.size();
  machine.scheduler.advance(60.0);
  EXPECT_EQ(delegate->bandwidthSampler().snapshots.get().size(), samples);
  EXPECT_EQ(machine.children.runs.size(), runs);
  EXPECT_TRUE(machine.paths.isWatched());
  EXPECT_TRUE(sent().empty());
}

TEST_F(AppDelegateTest, LeavesNothingBehindWhenItIsDestroyed) {
  launch();
  machine.children.usual.takes = 1.5;
  machine.scheduler.advance(11.0);
  delegate.reset();
  machine.scheduler.advance(60.0);
  settings.setRefreshInterval(7.0);
  machine.scheduler.advance(60.0);
  EXPECT_FALSE(machine.paths.isWatched());
  EXPECT_TRUE(sent().empty());
}

} // namespace
} // namespace tidewell::test
