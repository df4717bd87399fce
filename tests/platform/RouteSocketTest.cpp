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

} // namespace
} // namespace tidewell::test
