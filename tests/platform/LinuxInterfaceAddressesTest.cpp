#include "platform/linux/network/LinuxInterfaceAddresses.h"

#include "support/Damage.h"
#include "support/NetlinkMessage.h"
#include "support/NetworkNamespace.h"

#include <gtest/gtest.h>

#include <cstring>

#include <linux/rtnetlink.h>
#include <sys/socket.h>

namespace tidewell::test {
namespace {

using namespace std::string_view_literals;

NetlinkMessage address(unsigned index, unsigned char family = AF_INET) {
  ifaddrmsg header{};
  header.ifa_family = family;
  header.ifa_index = index;
  return {RTM_NEWADDR, header};
}

TEST(AddressMessages, GiveTheFirstAddressOfTheInterface) {
  const auto reply = address(2).data(IFA_LOCAL, "\x0A\0\0\1"sv).bytes() +
                     address(3, AF_INET6).data(IFA_ADDRESS, "0123456789abcdef"sv).bytes() +
                     address(3).data(IFA_LOCAL, "\xC0\xA8\1\x17"sv).bytes() +
                     address(3).data(IFA_LOCAL, "\xC0\xA8\1\x18"sv).bytes();
  EXPECT_EQ(parseFirstIPv4(reply, 3), "192.168.1.23");
  EXPECT_EQ(parseFirstIPv4(reply, 2), "10.0.0.1");
  EXPECT_EQ(parseFirstIPv4(reply, 4), std::nullopt);
  EXPECT_EQ(parseFirstIPv4({}, 3), std::nullopt);
}

TEST(AddressMessages, GiveOurOwnEndOfAPointToPointLink) {
  auto both = address(3).data(IFA_ADDRESS, "\x0A\0\0\2"sv).data(IFA_LOCAL, "\x0A\0\0\1"sv);
  EXPECT_EQ(parseFirstIPv4(both.bytes(), 3), "10.0.0.1");
  EXPECT_EQ(parseFirstIPv4(address(3).data(IFA_ADDRESS, "\x0A\0\0\2"sv).bytes(), 3), "10.0.0.2");
}

TEST(AddressMessages, GoOnBehindAnAddressThatIsNone) {
  const auto reply = address(3).data(IFA_LOCAL, "\x0A\0"sv).bytes() + address(3).bytes() +
                     address(3).data(IFA_LOCAL, "\x0A\0\0\1"sv).bytes();
  EXPECT_EQ(parseFirstIPv4(reply, 3), "10.0.0.1");
}

TEST(AddressMessages, AreNotReadBeyondTheEndOfTheirMessage) {
  for (const std::uint32_t cut : {1U, 2U, 3U}) {
    auto reply = address(3).data(IFA_LOCAL, "\x0A\0\0\1"sv).bytes();
    const auto length = static_cast<std::uint32_t>(reply.size()) - cut;
    std::memcpy(reply.data(), &length, sizeof length);
    EXPECT_EQ(parseFirstIPv4(reply, 3), std::nullopt) << cut;
  }
}

TEST(AddressMessages, SurviveEveryTruncationAndRandomDamage) {
  const auto whole = address(3).data(IFA_LOCAL, "\x0A\0\0\1"sv).bytes();
  const auto read = [](const auto& bytes) { return parseFirstIPv4(bytes, 3) ? 1 : 0; };
  forEachTruncation(whole, [&](const auto& piece) { EXPECT_EQ(read(piece), 0); });
  EXPECT_GT(readDamaged(whole, 3, read), 0U);
}

TEST(LinuxInterfaceAddresses, GivesTheKernelsFirstAddressAlsoAfterThousands) {
  const auto network = NetworkNamespace::enter();
  if (!network) {
    GTEST_SKIP() << "this machine does not allow network namespaces";
  }
  EXPECT_TRUE(shell("ip link add wan0 type veth peer name far0 && ip link set wan0 up && "
                    "ip link set far0 up"));
  LinuxInterfaceAddresses addresses;
  EXPECT_EQ(addresses.firstIPv4("wan0"), std::nullopt) << "only IPv6, if that";
  EXPECT_TRUE(shell("ip addr add 192.0.2.7/24 dev wan0 && ip addr add 192.0.2.3/24 dev wan0 && "
                    "for net in $(seq 0 199); do for host in $(seq 1 10); do "
                    "echo addr add 10.1.$net.$host/32 dev wan0; done; done | ip -batch - && "
                    "ip addr add 198.51.100.1/24 dev far0"));
  EXPECT_EQ(addresses.firstIPv4("wan0"), "192.0.2.7");
  EXPECT_EQ(addresses.firstIPv4("far0"), "198.51.100.1");
  for (const char* name :
       {"", "nosuch0", "wan", "wan0\n", "a-name-longer-than-any-interface-has"}) {
    EXPECT_EQ(addresses.firstIPv4(name), std::nullopt) << name;
  }
}

} // namespace
} // namespace tidewell::test
