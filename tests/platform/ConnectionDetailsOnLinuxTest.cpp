#include "connectivity/ConnectionDetails.h"

#include "platform/linux/bus/SessionBus.h"
#include "platform/linux/network/LinuxConfigurationStore.h"
#include "platform/linux/network/LinuxInterfaceAddresses.h"
#include "platform/linux/network/RouteSocket.h"
#include "support/DnsFiles.h"
#include "support/FakeMachine.h"
#include "support/LoopRunner.h"
#include "support/NetworkNamespace.h"

#include <gtest/gtest.h>

#include <memory>

namespace tidewell::test {
namespace {

using InterfaceType = ConnectionInfo::InterfaceType;

/// The details of the kernel's network, in a namespace. The reply from the internet is a fake.
class ConnectionDetailsOnLinux : public testing::Test {
protected:
  void SetUp() override {
    network = NetworkNamespace::enter();
    if (!network) {
      GTEST_SKIP() << "this machine does not allow network namespaces";
    }
    writeInPlace(dns.places.resolverFile, "nameserver 192.0.2.53\n");
    EXPECT_TRUE(shell("ip link add wan0 type veth peer name far0 && ip link set far0 up && "
                      "ip link set wan0 up"));
  }
  void connect() {
    EXPECT_TRUE(shell("ip addr add 192.0.2.1/24 dev wan0 && "
                      "ip route add default via 192.0.2.254"));
  }
  ConnectionInfo fetch(InterfaceType type) {
    const Platform platform{machine.scheduler, machine.clock, machine.counters, configuration,
                            addresses,         machine.paths, machine.http,     machine.children};
    ConnectionDetails details(platform);
    return awaited(loop, details.fetchConnectionInfo(type));
  }

  std::unique_ptr<NetworkNamespace> network;
  DnsFiles dns;
  FakeMachine machine;
  RouteSocket socket;
  EpollLoop loop;
  SessionBus noBus{loop, ""};
  LinuxConfigurationStore configuration{loop, socket, noBus, dns.places};
  LinuxInterfaceAddresses addresses;
};

TEST_F(ConnectionDetailsOnLinux, DescribeAWiredLink) {
  connect();
  EXPECT_EQ(fetch(InterfaceType::ethernet),
            (ConnectionInfo{"Ethernet", "Ethernet (wan0)", InterfaceType::ethernet, "192.0.2.1",
                            "203.0.113.7", "192.0.2.53", std::nullopt}));
}

TEST_F(ConnectionDetailsOnLinux, DescribeTheTunnelThatTakesTheTraffic) {
  connect();
  EXPECT_TRUE(shell("ip tuntap add tun0 mode tun && ip link set tun0 up && "
                    "ip addr add 10.8.0.2/24 dev tun0 && ip route add 0.0.0.0/1 dev tun0 && "
                    "ip route add 128.0.0.0/1 dev tun0"));
  const ConnectionInfo info = fetch(InterfaceType::other);
  EXPECT_EQ(info.interfaceName, "Other (tun0)");
  EXPECT_EQ(info.ipAddress, "10.8.0.2");
  EXPECT_EQ(info.networkName, "Unknown");
}

TEST_F(ConnectionDetailsOnLinux, DescribeALinkWithIPv6Alone) {
  EXPECT_TRUE(shell("ip -6 addr add 2001:db8::1/64 dev wan0 nodad && "
                    "ip -6 route add default via 2001:db8::ff"));
  writeInPlace(dns.places.resolverFile, "nameserver 2001:db8::53\n");
  const ConnectionInfo info = fetch(InterfaceType::ethernet);
  EXPECT_EQ(info.interfaceName, "Ethernet (wan0)");
  EXPECT_EQ(info.ipAddress, "--");
  EXPECT_EQ(info.dns, "2001:db8::53");
}

TEST_F(ConnectionDetailsOnLinux, FallBackWithoutALink) {
  std::filesystem::remove(dns.places.resolverFile);
  machine.http.body = std::nullopt;
  EXPECT_EQ(fetch(InterfaceType::other),
            (ConnectionInfo{"Unknown", "Other (en0)", InterfaceType::other, "--", "--", "--",
                            std::nullopt}));
}

/// The kernel may report a lost carrier up to a second later.
bool awaitLoss(const std::string& device) {
  return shell("timeout 5 sh -c 'until ip link show " + device +
               " | grep -q LOWERLAYERDOWN; do sleep 0.01; done'");
}

TEST_F(ConnectionDetailsOnLinux, PreferTheLinkThatWorksToTheOneThatDoesNot) {
  connect();
  EXPECT_TRUE(shell("ip link add wan1 type veth peer name far1 && ip link set far1 up && "
                    "ip link set wan1 up && ip -6 addr add 2001:db8::1/64 dev wan1 nodad && "
                    "ip -6 route add default via 2001:db8::ff && ip link set far0 down"));
  EXPECT_TRUE(awaitLoss("wan0"));
  EXPECT_EQ(configuration.primaryInterface(), "wan1");
  EXPECT_TRUE(shell("ip link set far1 down"));
  EXPECT_TRUE(awaitLoss("wan1"));
  EXPECT_EQ(configuration.primaryInterface(), "wan0");
}

} // namespace
} // namespace tidewell::test
