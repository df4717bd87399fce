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
  std::vector<std::string> sent() const { return center.identifiers(); }
  std::size_t samples() const { return delegate->bandwidthSampler().snapshots.get().size(); }
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

TEST_F(AppDelegateTest, AsksForPermissionOnceAndPostsNothingWhenItStartsOnline) {
  launch();
  EXPECT_EQ(center.authorizations, 1);
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

TEST_F(AppDelegateTest, PostsOneNoticeForEachChangeOfConnectivityWhichTheSamplerHearsFirst) {
  std::vector<NetworkStatus> statuses;
  center.atAdd = [&] { statuses.push_back(delegate->bandwidthSampler().currentStatus()); };
  launch();
  for (const bool isOnline : {false, false, true, true}) {
    report(isOnline);
    EXPECT_EQ(delegate->bandwidthSampler().isConnected, isOnline);
  }
  EXPECT_EQ(sent(), (std::vector<std::string>{"connection-lost", "connection-restored"}));
  EXPECT_EQ(statuses, (std::vector{NetworkStatus::down, NetworkStatus::excellent}));
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
  settings.setHighLatencyThreshold(-5.0);
  publishLatency(0.0);
  settings.setHighLatencyThreshold(100.0);
  EXPECT_TRUE(sent().empty());
  publishLatency(100.1);
  EXPECT_EQ(sent(), std::vector<std::string>{"high-latency"});
}

TEST_F(AppDelegateTest, SamplesAtTheStoredIntervalOrEveryTwoSecondsWhenItIsAbsentOrAbsurd) {
  const std::pair<std::optional<double>, std::size_t> rows[] = {
      {std::nullopt, 10},
      {5.0, 4},
      {0.0, 10},
      {-3.0, 10},
      {std::numeric_limits<double>::quiet_NaN(), 10}};
  for (const auto& [interval, count] : rows) {
    if (interval) {
      settings.setRefreshInterval(*interval);
    }
    delegate = std::make_unique<AppDelegate>(
        machine.platform, AppEnvironment{settings, preferences, center, notifications});
    launch();
    machine.scheduler.advance(20.0);
    EXPECT_EQ(samples(), count);
  }
}

TEST_F(AppDelegateTest, RestartsTheSamplerOnceForANewInterval) {
  launch();
  machine.scheduler.advance(4.0);
  ASSERT_EQ(samples(), 2U);
  settings.setRefreshInterval(5.0);
  machine.scheduler.advance(4.9);
  EXPECT_EQ(samples(), 2U);
  machine.scheduler.advance(0.2);
  EXPECT_EQ(samples(), 3U);
  machine.scheduler.advance(10.0);
  EXPECT_EQ(samples(), 5U);
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
  EXPECT_EQ(samples(), 10U);
}

TEST_F(AppDelegateTest, DoesNotRestartForTheValuesThatAreThereAtLaunch) {
  settings.setRefreshInterval(3.0);
  machine.scheduler.settle();
  launch();
  machine.scheduler.advance(2.9);
  machine.scheduler.advance(0.2);
  EXPECT_EQ(samples(), 1U);
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
  machine.scheduler.advance(11.9);
  EXPECT_EQ(runsOf(Tool::processTraffic), 1U);
  machine.scheduler.advance(0.2);
  EXPECT_EQ(runsOf(Tool::processTraffic), 2U);
  settings.setTrackPerProcess(false);
  machine.scheduler.advance(60.0);
  EXPECT_EQ(runsOf(Tool::processTraffic), 2U);
}

TEST_F(AppDelegateTest, StopsTrackingWhenTheSettingIsRemoved) {
  settings.setTrackPerProcess(true);
  launch();
  preferences.remove("trackPerProcess");
  machine.scheduler.advance(60.0);
  EXPECT_EQ(runsOf(Tool::processTraffic), 0U);
}

TEST_F(AppDelegateTest, StartsNothingForTheValueThatIsInForce) {
  launch();
  settings.setTrackPerProcess(true); // absent before, which is on
  machine.scheduler.advance(25.0);
  EXPECT_EQ(runsOf(Tool::processTraffic), 3U);
  preferences.set("trackPerProcess", std::int64_t{1});
  settings.setTrackPerProcess(true);
  machine.scheduler.advance(10.0);
  EXPECT_EQ(runsOf(Tool::processTraffic), 4U);
  settings.setTrackPerProcess(false);
  machine.scheduler.advance(60.0);
  EXPECT_EQ(runsOf(Tool::processTraffic), 4U);
}

TEST_F(AppDelegateTest, ReadsATrackingSettingOfAnotherTypeAsAtLaunch) {
  for (const PreferenceValue& value :
       {PreferenceValue(std::int64_t{1}), PreferenceValue(std::int64_t{0}), PreferenceValue(0.0),
        PreferenceValue(std::string("no"))}) {
    preferences.clear();
    preferences.set("trackPerProcess", value);
    delegate = std::make_unique<AppDelegate>(
        machine.platform, AppEnvironment{settings, preferences, center, notifications});
    launch();
    const auto before = runsOf(Tool::processTraffic);
    machine.scheduler.advance(60.0);
    EXPECT_EQ(runsOf(Tool::processTraffic) - before, 6U) << "at launch";
    settings.setTrackPerProcess(false);
    machine.scheduler.advance(60.0);
    EXPECT_EQ(runsOf(Tool::processTraffic) - before, 6U);
    preferences.set("trackPerProcess", value);
    machine.scheduler.advance(60.0);
    EXPECT_EQ(runsOf(Tool::processTraffic) - before, 12U) << "while running";
  }
}

TEST_F(AppDelegateTest, StopsBothTimersAndNothingElseAtTheEnd) {
  launch();
  machine.scheduler.advance(10.0);
  delegate->applicationWillTerminate();
  const auto before = samples();
  const auto runs = machine.children.runs.size();
  machine.scheduler.advance(60.0);
  EXPECT_EQ(samples(), before);
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
