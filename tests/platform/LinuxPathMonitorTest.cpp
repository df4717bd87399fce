#include "platform/linux/network/LinuxPathMonitor.h"

#include "support/KernelMachine.h"
#include "support/ScarceDescriptors.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstring>
#include <optional>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <linux/if.h>
#include <linux/if_tun.h>
#include <sys/ioctl.h>

namespace tidewell::test {
namespace {

constexpr PathReport wired{true, false, true, false};
constexpr PathReport tunnel{true, false, false, false};
constexpr PathReport unsatisfied{false, false, false, false};

/// A tunnel with a route to its far end. It has a carrier while the descriptor is open.
FileDescriptor makeTunnel() {
  FileDescriptor device(::open("/dev/net/tun", O_RDWR | O_CLOEXEC));
  ifreq request{};
  std::strcpy(request.ifr_name, "tun0");
  request.ifr_flags = IFF_TUN | IFF_NO_PI;
  EXPECT_EQ(::ioctl(device.get(), TUNSETIFF, &request), 0);
  EXPECT_TRUE(shell("ip link set tun0 up && ip addr add 10.8.0.2/24 dev tun0"));
  return device;
}

class LinuxPathMonitorTest : public testing::Test {
protected:
  void SetUp() override {
    machine = KernelMachine::make();
    if (!machine) {
      GTEST_SKIP() << "this machine does not allow network namespaces";
    }
  }
  void TearDown() override { watch.reset(); }

  void begin() {
    watch = machine->monitor.watch(*machine->queue,
                                   [this](const PathReport& report) { reports.push_back(report); });
  }
  bool beginConnected() {
    machine->connect();
    begin();
    return hasReports(1);
  }
  /// Whether exactly this many reports came within a second.
  bool hasReports(std::size_t count) {
    const auto start = std::chrono::steady_clock::now();
    const bool reached = runUntil(machine->loop, [&] { return reports.size() >= count; });
    const auto taken = std::chrono::steady_clock::now() - start;
    return reached && reports.size() == count && taken < std::chrono::seconds(1);
  }

  bool hasReportsAfter(const std::string& command, std::size_t count) {
    EXPECT_TRUE(shell(command));
    return hasReports(count);
  }

  std::unique_ptr<KernelMachine> machine;
  std::vector<PathReport> reports;
  std::unique_ptr<PathWatch> watch;
};

TEST_F(LinuxPathMonitorTest, ReportsALostCarrierThoughItsRouteStays) {
  ASSERT_TRUE(beginConnected());
  ASSERT_TRUE(hasReportsAfter("ip link set far0 down", 2));
  EXPECT_TRUE(shell("ip route show default | grep -q wan0"));
  ASSERT_TRUE(hasReportsAfter("ip link set far0 up", 3));
  EXPECT_EQ(reports, (std::vector{wired, unsatisfied, wired}));
}

TEST_F(LinuxPathMonitorTest, ReportsALinkThatWasTakenDownOrRemoved) {
  ASSERT_TRUE(beginConnected());
  ASSERT_TRUE(hasReportsAfter("ip link set wan0 down", 2));
  EXPECT_TRUE(shell("ip link set wan0 up"));
  machine->connect();
  ASSERT_TRUE(hasReports(3));
  ASSERT_TRUE(hasReportsAfter("ip link del wan0", 4));
  EXPECT_EQ(reports, (std::vector{wired, unsatisfied, wired, unsatisfied}));
}

TEST_F(LinuxPathMonitorTest, ReportsNothingOfALossThatIsOverAtOnce) {
  ASSERT_TRUE(beginConnected());
  EXPECT_TRUE(shell("ip route del default && ip route add default via 192.0.2.254"));
  EXPECT_TRUE(shell("ip link set far0 down && ip link set far0 up"));
  machine->serve(0.5);
  EXPECT_EQ(reports, std::vector{wired});
}

TEST_F(LinuxPathMonitorTest, ReportsATunnelThatTakesTheTrafficBySplitRoutes) {
  ASSERT_TRUE(beginConnected());
  FileDescriptor device = makeTunnel();
  machine->serve(0.5);
  EXPECT_EQ(reports, std::vector{wired}) << "a tunnel that takes nothing";
  ASSERT_TRUE(
      hasReportsAfter("ip route add 0.0.0.0/1 dev tun0 && ip route add 128.0.0.0/1 dev tun0", 2));
  device.reset();
  ASSERT_TRUE(hasReports(3));
  EXPECT_EQ(reports, (std::vector{wired, tunnel, wired}));
}

TEST_F(LinuxPathMonitorTest, ReportsATunnelThatTakesTheTrafficByARule) {
  ASSERT_TRUE(beginConnected());
  const FileDescriptor device = makeTunnel();
  EXPECT_TRUE(shell("ip route add default dev tun0 table 51820"));
  machine->serve(0.5);
  EXPECT_EQ(reports, std::vector{wired});
  ASSERT_TRUE(hasReportsAfter("ip rule add not fwmark 51820 table 51820", 2));
  EXPECT_EQ(reports.back(), tunnel);
}

TEST_F(LinuxPathMonitorTest, IsSatisfiedByIPv6Alone) {
  shell("sysctl -qw net.ipv6.conf.wan0.disable_ipv6=0");
  EXPECT_TRUE(shell("ip addr flush dev wan0 scope global && "
                    "ip -6 addr add 2001:db8::1/64 dev wan0 nodad && "
                    "ip -6 route add default via 2001:db8::ff"));
  begin();
  ASSERT_TRUE(hasReports(1));
  ASSERT_TRUE(hasReportsAfter("ip -6 route del default", 2));
  EXPECT_EQ(reports, (std::vector{wired, unsatisfied}));
}

TEST_F(LinuxPathMonitorTest, IsNotSatisfiedByTheLoopback) {
  EXPECT_TRUE(shell("ip link set lo up && ip route add default dev lo"));
  begin();
  ASSERT_TRUE(hasReports(1));
  EXPECT_EQ(reports.back(), unsatisfied);
}

TEST_F(LinuxPathMonitorTest, ReportsAgainWhenTheGatewayChanged) {
  ASSERT_TRUE(beginConnected());
  ASSERT_TRUE(hasReportsAfter("ip route replace default via 192.0.2.253", 2));
  EXPECT_EQ(reports, (std::vector{wired, wired}));
}

TEST_F(LinuxPathMonitorTest, ReportsAgainWhenTheDnsServersChanged) {
  ASSERT_TRUE(beginConnected());
  const DnsPlaces& places = machine->dns.places;
  writeInPlace(places.resolverFile, "nameserver 192.168.1.1\n");
  ASSERT_TRUE(hasReports(2));
  writeByRenaming(places.resolverFile, "# the same\nnameserver 192.168.1.1\n");
  machine->serve(0.6);
  EXPECT_EQ(reports.size(), 2U);
  std::filesystem::create_directory(places.resolvedDirectory);
  writeByRenaming(places.resolvedDirectory + "/resolv.conf", "nameserver 9.9.9.9\n");
  ASSERT_TRUE(hasReports(3));
  machine->monitor.dnsServersChanged();
  ASSERT_TRUE(hasReports(4));
  EXPECT_EQ(reports, std::vector(4, wired));
}

TEST_F(LinuxPathMonitorTest, ReportsNothingOfALinkThatIsDownWhileTheMachineSleeps) {
  ASSERT_TRUE(beginConnected());
  machine->monitor.setSleeping(true);
  EXPECT_TRUE(shell("ip link set wan0 down"));
  machine->serve(0.5);
  EXPECT_EQ(reports, std::vector{wired});
}

TEST_F(LinuxPathMonitorTest, ReportsAgainWhenTheAddressChanged) {
  ASSERT_TRUE(beginConnected());
  ASSERT_TRUE(
      hasReportsAfter("ip addr add 203.0.113.5/24 dev wan0 && ip addr del 192.0.2.1/24 dev wan0 && "
                      "ip route replace default via 203.0.113.254",
                      2));
  EXPECT_EQ(reports, (std::vector{wired, wired}));
}

TEST_F(LinuxPathMonitorTest, LooksOnceASecondWhileTheKernelNeverIsQuiet) {
  ASSERT_TRUE(beginConnected());
  std::atomic<bool> isOver = false;
  std::thread noise([&] {
    while (!isOver) {
      shell("ip addr add 198.51.100.1/24 dev far0; ip addr del 198.51.100.1/24 dev far0");
    }
  });
  machine->disconnect();
  EXPECT_TRUE(runUntil(machine->loop, [&] { return reports.size() == 2; }));
  isOver = true;
  noise.join();
  EXPECT_EQ(reports.back(), unsatisfied);
}

TEST_F(LinuxPathMonitorTest, TellsItsObserverBeforeTheWatchersHear) {
  std::vector<bool> observed;
  LinuxPathMonitor monitor(machine->loop, machine->socket,
                           [&](bool isSatisfied) { observed.push_back(isSatisfied); });
  const auto own = monitor.watch(*machine->queue, [](const PathReport&) {});
  EXPECT_EQ(observed, std::vector{false}) << "known as soon as the watch begins";
  machine->connect();
  EXPECT_TRUE(runUntil(machine->loop, [&] { return observed.size() == 2; }));
  EXPECT_TRUE(observed.back());
}

TEST_F(LinuxPathMonitorTest, WatchesAsSoonAsThereAreDescriptorsAgain) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer needs descriptors to check objects";
#endif
  std::vector<bool> observed;
  std::optional<ScarceDescriptors> scarce(std::in_place);
  LinuxPathMonitor monitor(machine->loop, machine->socket,
                           [&](bool isSatisfied) { observed.push_back(isSatisfied); });
  const auto own = monitor.watch(*machine->queue, [](const PathReport&) {});
  EXPECT_EQ(observed, std::vector{false});
  scarce.reset();
  machine->connect();
  EXPECT_TRUE(runUntil(machine->loop, [&] { return observed.size() == 2; }));
  machine->disconnect();
  EXPECT_TRUE(runUntil(machine->loop, [&] { return observed.size() == 3; }));
  EXPECT_EQ(observed, (std::vector{false, true, false}));
}

TEST_F(LinuxPathMonitorTest, TellsEveryWatcher) {
  begin();
  std::vector<PathReport> others;
  const auto other = machine->monitor.watch(
      *machine->queue, [&](const PathReport& report) { others.push_back(report); });
  EXPECT_TRUE(runUntil(machine->loop, [&] { return reports.size() == 1 && others.size() == 1; }));
  machine->connect();
  EXPECT_TRUE(runUntil(machine->loop, [&] { return reports.size() == 2 && others.size() == 2; }));
  EXPECT_EQ(others, reports);
}

} // namespace
} // namespace tidewell::test
