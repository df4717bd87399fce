#include "connectivity/NetworkMonitor.h"

#include "support/FakeMachine.h"

#include <gtest/gtest.h>

#include <random>

namespace tidewell::test {
namespace {

using InterfaceType = ConnectionInfo::InterfaceType;

constexpr PathReport wired{true, false, true, false};
constexpr PathReport wireless{true, true, false, false};
constexpr PathReport none{false, false, false, false};

class NetworkMonitorTest : public testing::Test {
protected:
  FakeMachine machine;
  std::shared_ptr<NetworkMonitor> monitor = NetworkMonitor::make(machine.platform);

  void report(const PathReport& path) {
    machine.paths.report(path);
    machine.scheduler.advance(10.0);
  }
};

TEST_F(NetworkMonitorTest, IsOptimisticUntilTheFirstFetch) {
  EXPECT_TRUE(monitor->isConnected.get());
  EXPECT_EQ(monitor->interfaceType.get(), InterfaceType::wifi);
  EXPECT_EQ(monitor->connectionInfo.get(), ConnectionInfo());
  EXPECT_TRUE(machine.paths.isWatched());
  EXPECT_EQ(machine.scheduler.labels(),
            std::vector<std::string>{"com.halden.tidewell.pathmonitor"});
}

TEST_F(NetworkMonitorTest, FetchesAtTheStartAsIfTheLinkWereWifi) {
  int connectivityHeard = 0;
  const auto watch = monitor->isConnected.subscribe([&](bool) { ++connectivityHeard; });
  machine.scheduler.advance(3600.0);
  EXPECT_EQ(machine.http.requests.size(), 1U) << "none without a report";
  EXPECT_EQ(monitor->connectionInfo.get().interfaceName, "Wi-Fi (eth0)");
  EXPECT_EQ(monitor->connectionInfo.get().networkName, "Wi-Fi");
  EXPECT_EQ(connectivityHeard, 1) << "the start tells nothing of connectivity";
  report(wired);
  EXPECT_EQ(monitor->connectionInfo.get().networkName, "Ethernet");
}

/// Hands the first report over before watch() returns.
class HastyPaths final : public PathMonitor {
public:
  explicit HastyPaths(FakeMachine& machine) : m_machine(machine) {}

  [[nodiscard]] std::unique_ptr<PathWatch> watch(WorkQueue& queue, Handler handler) override {
    auto watch = m_machine.paths.watch(queue, std::move(handler));
    m_machine.paths.report(wired);
    m_machine.scheduler.advance(10.0);
    return watch;
  }

private:
  FakeMachine& m_machine;
};

TEST(NetworkMonitor, LetsTheFirstReportHaveTheLastWordHoweverSoonItComes) {
  FakeMachine machine;
  HastyPaths paths(machine);
  const auto& platform = machine.platform;
  const auto monitor = NetworkMonitor::make({platform.scheduler, platform.clock, platform.counters,
                                             platform.configuration, platform.addresses, paths,
                                             platform.http, platform.children});
  machine.scheduler.advance(10.0);
  EXPECT_EQ(monitor->connectionInfo.get().interfaceName, "Ethernet (eth0)");
  EXPECT_EQ(monitor->connectionInfo.get().networkName, "Ethernet");
}

TEST_F(NetworkMonitorTest, ClassifiesTheLinkWifiFirst) {
  const auto kindOf = [this](const PathReport& path) {
    report(path);
    return monitor->interfaceType.get();
  };
  EXPECT_EQ(kindOf({true, true, true, true}), InterfaceType::wifi);
  EXPECT_EQ(kindOf({true, false, true, true}), InterfaceType::ethernet);
  EXPECT_EQ(kindOf({true, false, false, true}), InterfaceType::cellular);
  EXPECT_EQ(kindOf({true, false, false, false}), InterfaceType::other);
}

TEST_F(NetworkMonitorTest, PublishesALostPathWithItsKindAndFreshDetails) {
  report(wired);
  machine.http.body = std::nullopt;
  report({false, false, true, false});
  EXPECT_FALSE(monitor->isConnected.get());
  EXPECT_EQ(monitor->interfaceType.get(), InterfaceType::ethernet);
  EXPECT_EQ(monitor->connectionInfo.get().publicIP, "--");
  EXPECT_EQ(machine.http.requests.size(), 3U);
}

TEST_F(NetworkMonitorTest, PublishesTheThreeValuesOfAReportTogetherInOrder) {
  report(wired);
  std::vector<std::string> order;
  const auto first =
      monitor->connectionInfo.subscribe([&](const auto&) { order.emplace_back("details"); });
  const auto second =
      monitor->interfaceType.subscribe([&](const auto&) { order.emplace_back("kind"); });
  const auto third = monitor->isConnected.subscribe([&](bool connected) {
    order.emplace_back("connected");
    if (!connected) {
      machine.scheduler.main().post([&] { order.emplace_back("next task"); });
    }
  });
  order.clear();
  report(none);
  EXPECT_EQ(order, (std::vector<std::string>{"connected", "kind", "details", "next task"}));
}

TEST_F(NetworkMonitorTest, PublishesOnlyWhenTheDetailsAreThere) {
  machine.scheduler.advance(10.0);
  machine.http.takes = 2.0;
  machine.paths.report(none);
  machine.scheduler.advance(1.9);
  EXPECT_TRUE(monitor->isConnected.get());
  machine.scheduler.advance(0.2);
  EXPECT_FALSE(monitor->isConnected.get());
}

TEST_F(NetworkMonitorTest, FetchesOnceForEachReportOneAfterTheOther) {
  machine.scheduler.advance(10.0);
  machine.http.requests.clear();
  machine.http.takes = 1.0;
  std::vector<bool> heard;
  const auto watch =
      monitor->isConnected.subscribe([&](bool connected) { heard.push_back(connected); });
  heard.clear();
  for (const auto& path : {none, wired, none, wireless}) {
    machine.paths.report(path);
  }
  machine.scheduler.advance(3.5);
  EXPECT_EQ(heard, (std::vector<bool>{false, true, false}));
  machine.scheduler.advance(1.0);
  EXPECT_EQ(heard, (std::vector<bool>{false, true, false, true}));
  EXPECT_EQ(machine.http.requests.size(), 4U);
  EXPECT_EQ(monitor->interfaceType.get(), InterfaceType::wifi);
}

TEST_F(NetworkMonitorTest, PublishesNothingOnceItIsGone) {
  machine.scheduler.advance(10.0);
  int heard = 0;
  const auto watch = monitor->connectionInfo.subscribe([&](const auto&) { ++heard; });
  machine.http.takes = 2.0;
  machine.paths.report(none);
  machine.paths.report(wired);
  machine.scheduler.advance(1.0);
  monitor.reset();
  EXPECT_EQ(heard, 1);
  machine.scheduler.advance(20.0);
  EXPECT_EQ(heard, 1);
  EXPECT_FALSE(machine.paths.isWatched());
  machine.paths.report(none);
  machine.scheduler.advance(20.0);
  EXPECT_EQ(machine.http.requests.size(), 2U);
}

class MonitorInterleavings : public testing::TestWithParam<std::uint64_t> {};

TEST_P(MonitorInterleavings, EndWithTheLastReport) {
  FakeMachine machine(GetParam());
  std::mt19937_64 random(GetParam());
  const auto monitor = NetworkMonitor::make(machine.platform);
  PathReport last;
  for (int round = 0; round < 40; ++round) {
    last = {random() % 2 == 0, random() % 2 == 0, random() % 2 == 0, random() % 2 == 0};
    machine.http.takes = static_cast<double>(random() % 50) / 10.0;
    machine.paths.report(last);
    machine.scheduler.advance(static_cast<double>(random() % 40) / 10.0);
  }
  machine.scheduler.advance(200.0);
  EXPECT_EQ(monitor->isConnected.get(), last.isSatisfied);
  EXPECT_EQ(monitor->interfaceType.get() == InterfaceType::wifi, last.usesWifi);
  EXPECT_EQ(monitor->connectionInfo.get().interfaceType, monitor->interfaceType.get());
}

INSTANTIATE_TEST_SUITE_P(Seeds, MonitorInterleavings, testing::Range<std::uint64_t>(0, 32));

} // namespace
} // namespace tidewell::test
