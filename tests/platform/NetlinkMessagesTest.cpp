#include "platform/linux/network/NetlinkMessages.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <span>
#include <vector>

#include <libmnl/libmnl.h>
#include <linux/rtnetlink.h>

namespace tidewell::test {
namespace {

/// A netlink message as the kernel would send it.
class Message {
public:
  template <class Header> Message(std::uint16_t type, const Header& header) : m_bytes(4096) {
    m_header = mnl_nlmsg_put_header(m_bytes.data());
    m_header->nlmsg_type = type;
    std::memcpy(mnl_nlmsg_put_extra_header(m_header, sizeof header), &header, sizeof header);
  }
  Message& text(std::uint16_t type, const char* value) {
    mnl_attr_put_strz(m_header, type, value);
    return *this;
  }
  Message& data(std::uint16_t type, const void* value, std::size_t size) {
    mnl_attr_put(m_header, type, size, value);
    return *this;
  }
  std::vector<std::byte> bytes() const {
    return {m_bytes.begin(), m_bytes.begin() + m_header->nlmsg_len};
  }

private:
  std::vector<std::byte> m_bytes;
  nlmsghdr* m_header;
};

std::vector<std::byte> routeMessage(unsigned char type) {
  rtmsg header{};
  header.rtm_type = type;
  const int index = 42;
  return Message(RTM_NEWROUTE, header).data(RTA_OIF, &index, sizeof index).bytes();
}

TEST(NetlinkMessages, ReadsTheInterfaceOfAUnicastRouteOnly) {
  EXPECT_EQ(parseRouteInterface(routeMessage(RTN_UNICAST)), 42);
  for (const unsigned char type : {RTN_LOCAL, RTN_UNREACHABLE, RTN_BLACKHOLE, RTN_PROHIBIT}) {
    EXPECT_EQ(parseRouteInterface(routeMessage(type)), std::nullopt) << int{type};
  }
  EXPECT_EQ(parseRouteInterface(Message(RTM_NEWROUTE, rtmsg{}).bytes()), std::nullopt);
}

TEST(NetlinkMessages, FindsTheRouteBehindOtherMessages) {
  auto bytes = Message(RTM_NEWLINK, ifinfomsg{}).text(IFLA_IFNAME, "eth0").bytes();
  const auto route = routeMessage(RTN_UNICAST);
  bytes.insert(bytes.end(), route.begin(), route.end());
  EXPECT_EQ(parseRouteInterface(bytes), 42);
  EXPECT_EQ(parseRouteInterface({}), std::nullopt);
}

TEST(NetlinkMessages, SurvivesEveryTruncation) {
  const auto route = routeMessage(RTN_UNICAST);
  for (std::size_t size = 0; size < route.size(); ++size) {
    // A copy of exactly that size, so that a sanitizer sees every byte read beyond it.
    const std::vector<std::byte> piece(route.begin(),
                                       route.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_FALSE(parseRouteInterface(piece)) << size;
  }
}

TEST(NetlinkMessages, SurvivesRandomDamage) {
  std::mt19937 random(1);
  int understood = 0;
  for (int round = 0; round < 20'000; ++round) {
    auto bytes = routeMessage(RTN_UNICAST);
    for (unsigned changes = 1 + random() % 4; changes > 0; --changes) {
      bytes[random() % bytes.size()] = static_cast<std::byte>(random());
    }
    understood += parseRouteInterface(bytes) ? 1 : 0;
  }
  EXPECT_GT(understood, 0);
}

} // namespace
} // namespace tidewell::test
