#include "ui/mirror/ResidentMirror.h"

#include "bus/ResidentInterface.h"
#include "support/PrivateBus.h"
#include "windows/support/ResidentInQt.h"

#include <gtest/gtest.h>

#include <QTest>

#include <limits>
#include <memory>

namespace tidewell::test {
namespace {

template <class Condition> bool until(Condition&& condition) {
  return QTest::qWaitFor(std::forward<Condition>(condition), 10'000);
}

/// Publishes a sample as the sampler does.
void addSample(ResidentInQt& resident, double time, std::int64_t download, double latency = 12.5) {
  const auto sample =
      std::make_shared<const NetworkSnapshot>(time, download, 3, latency, 0.5, 10.0);
  residentInterface::forEachMetric([&](const auto& metric) {
    (resident.sampler.*metric.newest).set((*sample.*metric.ofSample)());
  });
  resident.sampler.snapshots.mutate([&](SnapshotList& list) { list.push_back(sample); });
}

class MirrorTest : public testing::Test {
protected:
  void SetUp() override {
    if (!daemon.isThere()) {
      GTEST_SKIP() << "dbus-daemon is not installed";
    }
  }
  void TearDown() override {
    mirror.reset();
    QDBusConnection::disconnectFromBus(QStringLiteral("mirror"));
  }

  void startResident() { resident = std::make_unique<ResidentInQt>(daemon.address()); }
  void startMirror() {
    mirror = std::make_unique<ResidentMirror>(QDBusConnection::connectToBus(
        QString::fromStdString(daemon.address()), QStringLiteral("mirror")));
  }
  void startBoth() {
    startResident();
    startMirror();
    ASSERT_TRUE(until([&] { return mirror->state().menubarText.get() == "↓0K ↑0K"; }));
  }
  ResidentState& state() { return mirror->state(); }

  PrivateBus daemon;
  std::unique_ptr<ResidentInQt> resident;
  std::unique_ptr<ResidentMirror> mirror;
};

TEST_F(MirrorTest, ShowsWhatWasPublishedBeforeItCame) {
  startResident();
  addSample(*resident, 7.0, 1'000'000);
  addSample(*resident, 9.0, 2'000'000);
  resident->tracker.processes.set({{812, "browser", 5, 6, 11, 0.75}});
  resident->speedTest.lastResult.set(SpeedTestResult{7.0, 245.6, 19.2, 900});
  startMirror();
  ASSERT_TRUE(until([&] { return state().sampler.snapshots.get().size() == 2; }));
  EXPECT_EQ(state().sampler.currentDownloadBytesPerSec.get(), 2'000'000);
  EXPECT_EQ(state().sampler.latencyMs.get(), 12.5);
  const NetworkSnapshot& newest = *state().sampler.snapshots.get().back();
  EXPECT_EQ(newest.timestamp(), 9.0);
  EXPECT_EQ(newest.downloadBytesPerSec(), 2'000'000);
  EXPECT_EQ(newest.uploadBytesPerSec(), 3);
  EXPECT_EQ(newest.latencyMs(), 12.5);
  EXPECT_EQ(newest.jitterMs(), 0.5);
  EXPECT_EQ(newest.packetLossPercent(), 10.0);
  EXPECT_EQ(state().tracker.processes.get(),
            (std::vector<ProcessUsage>{{812, "browser", 5, 6, 11, 0.75}}));
  EXPECT_EQ(state().speedTest.lastResult.get(), (SpeedTestResult{7.0, 245.6, 19.2, 900}));
}

TEST_F(MirrorTest, FollowsEverySample) {
  startBoth();
  for (int sample = 1; sample <= 3; ++sample) {
    addSample(*resident, sample, 1'000 * sample);
  }
  ASSERT_TRUE(until([&] { return state().sampler.currentDownloadBytesPerSec.get() == 3'000; }));
  EXPECT_EQ(state().sampler.snapshots.get().size(), 3U);
  EXPECT_TRUE(until([&] { return state().menubarText.get() == "↓3K ↑0K"; }));
}

TEST_F(MirrorTest, KeepsNoMoreSamplesThanTheResident) {
  startBoth();
  for (int sample = 0; sample < 320; ++sample) {
    addSample(*resident, sample, sample);
  }
  ASSERT_TRUE(until([&] { return state().sampler.currentDownloadBytesPerSec.get() == 319; }));
  EXPECT_EQ(state().sampler.snapshots.get().size(), 300U);
  EXPECT_EQ(state().sampler.snapshots.get().front()->timestamp(), 20.0);
}

TEST_F(MirrorTest, FollowsTheConnectionAndItsStatus) {
  startBoth();
  bool wasSamplerTold = true;
  const Subscription watch = state().monitor.isConnected.subscribe(
      [&](bool is) { wasSamplerTold = wasSamplerTold && state().sampler.isConnected == is; });
  ConnectionInfo sent;
  sent.networkName = "Riverside \xE2\x80\xAE";
  sent.interfaceName = "Wi-Fi (wlan0)";
  sent.interfaceType = ConnectionInfo::InterfaceType::other;
  sent.ipAddress = "192.168.1.20";
  sent.dns = "9.9.9.9";
  resident->monitor.interfaceType.set(sent.interfaceType);
  resident->monitor.connectionInfo.set(sent);
  resident->sampler.isConnected = false;
  resident->monitor.isConnected.set(false);
  ASSERT_TRUE(until([&] { return !state().monitor.isConnected.get(); }));
  EXPECT_TRUE(wasSamplerTold) << "the status is computed when the monitor tells";
  EXPECT_EQ(state().sampler.currentStatus(), NetworkStatus::down);
  const ConnectionInfo& info = state().monitor.connectionInfo.get();
  EXPECT_EQ(info.networkName, "Riverside \xE2\x80\xAE");
  EXPECT_EQ(info.interfaceType, ConnectionInfo::InterfaceType::other);
  EXPECT_EQ(info.publicIP, "--");
  EXPECT_EQ(info.dns, "9.9.9.9");
}

TEST_F(MirrorTest, FollowsASpeedTestToItsResultAndToNone) {
  startBoth();
  resident->speedTest.isRunning.set(true);
  ASSERT_TRUE(until([&] { return state().speedTest.isRunning.get(); }));
  resident->speedTest.lastResult.set(SpeedTestResult{9.0, 1.0, 2.0, 3});
  resident->speedTest.isRunning.set(false);
  ASSERT_TRUE(until([&] { return !state().speedTest.isRunning.get(); }));
  EXPECT_EQ(state().speedTest.lastResult.get()->responsiveness, 3);
  resident->speedTest.lastResult.set(std::nullopt);
  ASSERT_TRUE(until([&] { return !state().speedTest.lastResult.get(); }));
}

TEST_F(MirrorTest, FollowsASpeedTestThatFails) {
  startBoth();
  resident->speedTest.lastMeasured.set(SpeedTestResult{9.0, 1.0, 2.0, 3});
  resident->speedTest.failure.set("no server");
  resident->speedTest.lastResult.set(SpeedTestResult{11.0, 0.0, 0.0, 0});
  ASSERT_TRUE(until([&] { return state().speedTest.lastResult.get().has_value(); }));
  EXPECT_EQ(state().speedTest.failure.get(), "no server");
  EXPECT_EQ(shownResult(state().speedTest), (SpeedTestResult{9.0, 1.0, 2.0, 3}));
  resident->speedTest.failure.set("");
  ASSERT_TRUE(until([&] { return state().speedTest.failure.get().empty(); }));
}

TEST_F(MirrorTest, PassesAbsurdValuesOnAsTheyAre) {
  startBoth();
  addSample(*resident, 1.0, std::numeric_limits<std::int64_t>::max(),
            std::numeric_limits<double>::quiet_NaN());
  ASSERT_TRUE(until([&] {
    return state().sampler.currentDownloadBytesPerSec.get() ==
           std::numeric_limits<std::int64_t>::max();
  }));
  EXPECT_NE(state().sampler.latencyMs.get(), state().sampler.latencyMs.get());
}

TEST_F(MirrorTest, TellsThatTheResidentIsGoneAndRecoversWhenItIsBack) {
  startBoth();
  addSample(*resident, 1.0, 5'000);
  ASSERT_TRUE(until([&] { return state().sampler.snapshots.get().size() == 1; }));
  resident.reset();
  ASSERT_TRUE(until([&] { return !state().isThere.get(); }));
  EXPECT_EQ(state().sampler.currentDownloadBytesPerSec.get(), 5'000) << "the last value stays";
  startResident();
  ASSERT_TRUE(until([&] { return state().isThere.get(); }));
  EXPECT_TRUE(until([&] { return state().sampler.snapshots.get().empty(); }));
}

TEST_F(MirrorTest, TellsThatThereIsNoResidentToBeginWith) {
  startMirror();
  EXPECT_TRUE(until([&] { return !state().isThere.get(); }));
}

TEST_F(MirrorTest, PassesWishesOn) {
  startBoth();
  mirror->request(residentInterface::runSpeedTest);
  mirror->request(residentInterface::quit);
  EXPECT_TRUE(until([&] { return resident->speedTests == 1 && resident->quits == 1; }));
}

} // namespace
} // namespace tidewell::test
