#include "platform/linux/network/RouteSocket.h"

#include "support/Damage.h"
#include "support/NetlinkMessage.h"
#include "support/NetworkNamespace.h"
#include "support/ScarceDescriptors.h"

#include <gtest/gtest.h>

#include <linux/rtnetlink.h>

namespace tidewell::test {
namespace {

using namespace std::string_view_literals;

std::vector<std::byte> routeMessage(unsigned char type) {
  rtmsg header{};
  header.rtm_type = type;
  return NetlinkMessage(RTM_NEWROUTE, header)
      .number(RTA_OIF, 42)
      .data(RTA_PREFSRC, "\xC0\0\2\1"sv)
      .bytes();
}

TEST(RouteReply, IsReadFromAUnicastRouteOnly) {
  const auto route = parseRoute(routeMessage(RTN_UNICAST));
  ASSERT_TRUE(route);
  EXPECT_EQ(route->interfaceIndex, 42);
  EXPECT_EQ(route->source, "\xC0\0\2\1"sv);
  for (const unsigned char type : {RTN_LOCAL, RTN_UNREACHABLE, RTN_BLACKHOLE, RTN_PROHIBIT}) {
    EXPECT_FALSE(parseRoute(routeMessage(type))) << int{type};
  }
  EXPECT_FALSE(parseRoute(NetlinkMessage(RTM_NEWROUTE, rtmsg{}).bytes()));
}

TEST(RouteReply, IsFoundAfterOtherMessages) {
  const auto link = NetlinkMessage(RTM_NEWLINK, ifinfomsg{}).text(IFLA_IFNAME, "eth0").bytes();
  const auto route = parseRoute(link + routeMessage(RTN_UNICAST));
  EXPECT_TRUE(route && route->interfaceIndex == 42);
  EXPECT_FALSE(parseRoute({}));
  EXPECT_FALSE(parseRoute(routeMessage(RTN_LOCAL) + routeMessage(RTN_UNICAST))) << "the first one";
}

TEST(RouteReply, SurvivesEveryTruncationAndRandomDamage) {
  rtmsg header{};
  header.rtm_type = RTN_UNICAST;
  const auto route = NetlinkMessage(RTM_NEWROUTE, header).number(RTA_OIF, 42).bytes();
  forEachTruncation(route, [](const auto& piece) { EXPECT_FALSE(parseRoute(piece)); });
  EXPECT_GT(readDamaged(route, 4, [](const auto& bytes) { return parseRoute(bytes) ? 1 : 0; }), 0U);
}

TEST(RouteReply, NamesTheNextRouterOfEitherFamily) {
  rtmsg header{};
  header.rtm_type = RTN_UNICAST;
  const auto gatewayOf = [&](std::uint16_t type, std::string_view value) {
    const auto route = parseRoute(
        NetlinkMessage(RTM_NEWROUTE, header).number(RTA_OIF, 1).data(type, value).bytes());
    return route ? route->gateway : "no route";
  };
  EXPECT_EQ(gatewayOf(RTA_GATEWAY, "\xC0\0\2\xFE"sv), "\xC0\0\2\xFE"sv);
  EXPECT_EQ(gatewayOf(RTA_VIA, "\x0A\0router's address"sv), "router's address");
  EXPECT_EQ(gatewayOf(RTA_VIA, "\x0A"sv), "");
}

std::vector<std::byte> partOf(std::uint16_t type, std::uint16_t flags) {
  NetlinkRequest part(type, flags, rtmsg{});
  const auto bytes = part.bytes();
  return {bytes.begin(), bytes.end()};
}

TEST(NetlinkProgress, EndsWithASingleMessageOrTheLastOfMany) {
  const auto more = partOf(RTM_NEWROUTE, NLM_F_MULTI);
  EXPECT_EQ(netlinkProgress(partOf(RTM_NEWROUTE, 0)), NetlinkProgress::complete);
  EXPECT_EQ(netlinkProgress(more), NetlinkProgress::unfinished);
  EXPECT_EQ(netlinkProgress(more + partOf(NLMSG_DONE, NLM_F_MULTI)), NetlinkProgress::complete);
  EXPECT_EQ(netlinkProgress(more + partOf(NLMSG_ERROR, 0) + more), NetlinkProgress::refused);
}

TEST(RouteSocket, NamesTheLoopback) {
  RouteSocket socket;
  EXPECT_EQ(socket.interfaceName(1), "lo");
  EXPECT_EQ(socket.interfaceName(0), std::nullopt);
}

TEST(RouteSocket, WorksAsSoonAsThereAreDescriptorsAgain) {
  const auto network = NetworkNamespace::enter();
  if (!network) {
    GTEST_SKIP() << "this machine does not allow network namespaces";
  }
  EXPECT_TRUE(shell("ip link add wan0 type veth peer name far0 && ip link set far0 up && "
                    "ip link set wan0 up && ip addr add 192.0.2.1/24 dev wan0 && "
                    "ip route add default via 192.0.2.254"));
  RouteSocket socket;
  {
    const ScarceDescriptors scarce;
    EXPECT_FALSE(socket.publicRoute());
    EXPECT_FALSE(socket.interfaceName(1));
  }
  const auto route = socket.publicRoute();
  ASSERT_TRUE(route);
  EXPECT_EQ(route->interfaceName, "wan0");
  EXPECT_EQ(route->sourceIPv4, "\xC0\0\2\1"sv);
  EXPECT_TRUE(route->isRunning);
}

/// A wired link "wan0" with the default routes of IPv4 and another one, "lan0".
class RoutesOfThisMachine : public testing::Test {
protected:
  void SetUp() override {
    network = NetworkNamespace::enter();
    if (!network) {
      GTEST_SKIP() << "this machine does not allow network namespaces";
    }
    EXPECT_TRUE(
        shell("sysctl -qw net.ipv6.conf.all.accept_dad=0 net.ipv6.conf.default.accept_dad=0;"
              "for name in wan lan; do ip link add ${name}0 type veth peer name ${name}1 && "
              "ip link set ${name}1 up && ip link set ${name}0 up; done && "
              "ip addr add 192.0.2.1/24 dev wan0 && ip addr add 10.0.0.1/24 dev lan0 && "
              "ip -6 addr add fd00:1::2/64 dev lan0 nodad && "
              "ip route add default via 192.0.2.254"));
  }
  std::string interfaceAfter(const std::string& command) {
    EXPECT_TRUE(shell(command));
    const auto route = socket.publicRoute();
    return route ? route->interfaceName : "none";
  }

  std::unique_ptr<NetworkNamespace> network;
  RouteSocket socket;
};

TEST_F(RoutesOfThisMachine, AreNotThoseOfAnAddressThatIsRoutedApart) {
  EXPECT_EQ(interfaceAfter("ip route add 1.1.1.1 via 10.0.0.254 dev lan0"), "wan0");
  EXPECT_EQ(interfaceAfter("ip route replace unreachable 1.1.1.1"), "wan0");
  EXPECT_EQ(interfaceAfter("ip route add 63.64.0.0/16 dev lan0"), "wan0") << "two of three agree";
  EXPECT_EQ(interfaceAfter("ip route del 63.64.0.0/16 && ip route add 151.0.0.0/8 dev lan0"),
            "wan0");
  EXPECT_EQ(interfaceAfter("ip route del 151.0.0.0/8 && ip route add unreachable 203.0.0.0/8"),
            "wan0");
  EXPECT_EQ(interfaceAfter("ip route add 0.0.0.0/1 dev lan0 && ip route add 128.0.0.0/1 dev lan0"),
            "lan0");
}

TEST_F(RoutesOfThisMachine, AreThoseOfMostAddressesOverIPv6Too) {
  EXPECT_EQ(
      interfaceAfter("ip route del default && ip -6 route add default via fd00:1::1 dev lan0"),
      "lan0");
  EXPECT_EQ(interfaceAfter("ip -6 route add unreachable 2606:4700:4700::1111"), "lan0");
  EXPECT_EQ(interfaceAfter("ip -6 route add unreachable 2600::/16"), "lan0");
  EXPECT_EQ(interfaceAfter("ip -6 route add unreachable 2a00::/12"), "none");
}

TEST_F(RoutesOfThisMachine, LeadBelowATranslatorOfIPv4) {
  EXPECT_EQ(interfaceAfter("ip route del default && ip addr add 192.0.0.1/29 dev wan0 && "
                           "ip route add default dev wan0 src 192.0.0.1"),
            "wan0")
      << "without IPv6 it is not one";
  EXPECT_EQ(interfaceAfter("ip -6 route add default via fd00:1::1 dev lan0"), "lan0");
  EXPECT_EQ(interfaceAfter("ip addr add 192.0.0.9/29 dev wan0 && "
                           "ip route replace default dev wan0 src 192.0.0.9"),
            "wan0");
}

TEST_F(RoutesOfThisMachine, NameTheNextRouter) {
  const auto route = socket.publicRoute();
  ASSERT_TRUE(route);
  EXPECT_EQ(route->gateway, "\xC0\0\2\xFE"sv);
}

} // namespace
} // namespace tidewell::test
