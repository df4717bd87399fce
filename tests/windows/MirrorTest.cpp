#include "ui/mirror/ResidentMirror.h"

#include "app/ResidentShell.h"
#include "connectivity/MonitorState.h"
#include "platform/linux/bus/SessionBus.h"
#include "platform/linux/loop/EpollLoop.h"
#include "processes/TrackerState.h"
#include "sampling/SamplerState.h"
#include "settings/AppSettings.h"
#include "speedtest/SpeedTestState.h"
#include "support/FakeLoginItem.h"
#include "support/FakePreferencesStore.h"
#include "support/PrivateBus.h"

#include <gtest/gtest.h>

#include <QTest>

#include <atomic>
#include <functional>
#include <future>
#include <limits>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace tidewell::test {
namespace {

/// The resident's bus interface for states that a test sets, on a thread with its own event loop.
/// Stops in the destructor.
class ResidentThread {
public:
  struct States {
    SamplerState sampler;
    MonitorState monitor;
    TrackerState tracker;
    SpeedTestState speedTest;
  };

  explicit ResidentThread(std::string address)
      : m_thread([this, address = std::move(address)] { run(address); }) {
    m_loop = m_ready.get_future().get();
  }
  ResidentThread(const ResidentThread&) = delete;
  ResidentThread& operator=(const ResidentThread&) = delete;
  ~ResidentThread() {
    post([this] { m_loop->quit(); });
    m_thread.join();
    ::close(m_wake);
  }

  /// Changes the states on the resident's thread.
  void publish(std::function<void(States& states)> change) {
    post([this, change = std::move(change)] { change(m_states); });
  }

  std::atomic<int> quits = 0;
  std::atomic<int> speedTests = 0;

private:
  // The loop itself belongs to one thread.
  void post(std::function<void()> task) {
    const std::lock_guard lock(m_mutex);
    m_tasks.push_back(std::move(task));
    ::eventfd_write(m_wake, 1);
  }
  void runTasks() {
    eventfd_t count = 0;
    ::eventfd_read(m_wake, &count);
    std::unique_lock lock(m_mutex);
    const auto tasks = std::exchange(m_tasks, {});
    lock.unlock();
    for (const auto& task : tasks) {
      task();
    }
  }
  void run(const std::string& address) {
    EpollLoop loop;
    const auto watch = loop.watch(m_wake, EPOLLIN, [this](std::uint32_t) { runTasks(); });
    SessionBus bus(loop, address);
    FakePreferencesStore preferences(loop);
    FakeLoginItem loginItem;
    const AppSettings settings(preferences, loginItem);
    const ResidentShell shell(
        loop, bus,
        ResidentSources{m_states.sampler, m_states.monitor, m_states.tracker, m_states.speedTest,
                        settings, preferences},
        {[this] { ++quits; }, [] {}, [this] { ++speedTests; }, [](const WindowRequest&) {}});
    m_ready.set_value(&loop);
    loop.run();
  }

  States m_states; // used only by the thread while it runs
  std::promise<EpollLoop*> m_ready;
  EpollLoop* m_loop = nullptr;
  std::mutex m_mutex;
  std::vector<std::function<void()>> m_tasks;
  int m_wake = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  std::thread m_thread;
};

template <class Condition> bool until(Condition&& condition) {
  return QTest::qWaitFor(std::forward<Condition>(condition), 10'000);
}

void addSample(ResidentThread::States& states, double time, std::int64_t download) {
  states.sampler.currentDownloadBytesPerSec.set(download);
  states.sampler.snapshots.mutate([&](SnapshotList& list) {
    list.push_back(std::make_shared<const NetworkSnapshot>(time, download, 3, 12.5, 0.5, 10.0));
  });
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

  void startResident() { resident = std::make_unique<ResidentThread>(daemon.address()); }
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
  std::unique_ptr<ResidentThread> resident;
  std::unique_ptr<ResidentMirror> mirror;
};

TEST_F(MirrorTest, ShowsWhatWasPublishedBeforeItCame) {
  startResident();
  resident->publish([](auto& states) {
    states.sampler.latencyMs.set(12.5);
    addSample(states, 7.0, 1'000'000);
    addSample(states, 9.0, 2'000'000);
    states.tracker.processes.set({{812, "browser", 5, 6, 11, 0.75}});
    states.speedTest.lastResult.set(SpeedTestResult{7.0, 245.6, 19.2, 900});
  });
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
    resident->publish([=](auto& states) { addSample(states, sample, 1'000 * sample); });
  }
  ASSERT_TRUE(until([&] { return state().sampler.currentDownloadBytesPerSec.get() == 3'000; }));
  EXPECT_EQ(state().sampler.snapshots.get().size(), 3U);
  EXPECT_EQ(state().menubarText.get(), "↓3K ↑0K");
}

TEST_F(MirrorTest, KeepsNoMoreSamplesThanTheResident) {
  startBoth();
  resident->publish([](auto& states) {
    for (int sample = 0; sample < 320; ++sample) {
      addSample(states, sample, sample);
    }
  });
  ASSERT_TRUE(until([&] { return state().sampler.currentDownloadBytesPerSec.get() == 319; }));
  EXPECT_EQ(state().sampler.snapshots.get().size(), 300U);
  EXPECT_EQ(state().sampler.snapshots.get().front()->timestamp(), 20.0);
}

TEST_F(MirrorTest, FollowsTheConnectionAndItsStatus) {
  startBoth();
  bool wasSamplerTold = true;
  const Subscription watch = state().monitor.isConnected.subscribe(
      [&](bool is) { wasSamplerTold = wasSamplerTold && state().sampler.isConnected == is; });
  resident->publish([](auto& states) {
    ConnectionInfo info;
    info.networkName = "Riverside \xE2\x80\xAE";
    info.interfaceName = "Wi-Fi (wlan0)";
    info.interfaceType = ConnectionInfo::InterfaceType::other;
    info.ipAddress = "192.168.1.20";
    info.dns = "9.9.9.9";
    states.monitor.interfaceType.set(info.interfaceType);
    states.monitor.connectionInfo.set(info);
    states.sampler.isConnected = false;
    states.monitor.isConnected.set(false);
  });
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
  resident->publish([](auto& states) { states.speedTest.isRunning.set(true); });
  ASSERT_TRUE(until([&] { return state().speedTest.isRunning.get(); }));
  resident->publish([](auto& states) {
    states.speedTest.lastResult.set(SpeedTestResult{9.0, 1.0, 2.0, 3});
    states.speedTest.isRunning.set(false);
  });
  ASSERT_TRUE(until([&] { return !state().speedTest.isRunning.get(); }));
  EXPECT_EQ(state().speedTest.lastResult.get()->responsiveness, 3);
  resident->publish([](auto& states) { states.speedTest.lastResult.set(std::nullopt); });
  ASSERT_TRUE(until([&] { return !state().speedTest.lastResult.get(); }));
}

TEST_F(MirrorTest, PassesAbsurdValuesOnAsTheyAre) {
  startBoth();
  resident->publish([](auto& states) {
    states.sampler.latencyMs.set(std::numeric_limits<double>::quiet_NaN());
    addSample(states, 1.0, std::numeric_limits<std::int64_t>::max());
  });
  ASSERT_TRUE(until([&] {
    return state().sampler.currentDownloadBytesPerSec.get() ==
           std::numeric_limits<std::int64_t>::max();
  }));
  EXPECT_NE(state().sampler.latencyMs.get(), state().sampler.latencyMs.get());
}

TEST_F(MirrorTest, TellsThatTheResidentIsGoneAndRecoversWhenItIsBack) {
  startBoth();
  resident->publish([](auto& states) { addSample(states, 1.0, 5'000); });
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
  mirror->request(QStringLiteral("RunSpeedTest"));
  mirror->request(QStringLiteral("Quit"));
  EXPECT_TRUE(until([&] { return resident->speedTests == 1 && resident->quits == 1; }));
}

} // namespace
} // namespace tidewell::test
