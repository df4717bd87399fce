// What kernels with Wi-Fi have sent, which the machines that test this have none of. Recorded by
// others, and published by them: the interface with strace in 2015, the network with nlmon in 2024.

#include "platform/linux/network/WifiName.h"

#include "support/Damage.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include <linux/netlink.h>
#include <linux/nl80211.h>

namespace tidewell::test {
namespace {

using Bytes = std::vector<std::byte>;
using Interfaces = std::vector<WirelessInterface>;

// The client wlo1, of a kernel that does not say what network it is on.
constexpr std::string_view interface =
    "580000001b00000032fadd54f27b002e07010000080003000300000009000400776c6f310000000008000100"
    "0000000008000500020000000c00990001000000000000000a000600a44e31431c7d000008002e0005000000";
constexpr std::uint16_t interfaceFamily = 0x1B;

// A network that was seen but is not used.
constexpr std::string_view network =
    "3c0100002e00020001000000010000002201000008002e001e00000008000300150000000c00990001000000"
    "060000000c012f000a000100d6b26aa8bcb1000004000e000c0003006eb28dd3664506004900060000095465"
    "73742d57494649010882848b960c1218240301012a010432043048606c30140100000fac040100000fac0401"
    "00000fac08c0003b0251007f0804000000000000400000000c000d00cd608dd3664506004f000b0000095465"
    "73742d57494649010882848b960c1218240301010504000200002a010432043048606c30140100000fac0401"
    "00000fac040100000fac08c0003b0251007f0804000000000000400006000400640000000600050011040000"
    "080002006c090000080014000000000008000a009f2f00000c000f005043f2ea159900000800070048f4ffff"
    "0800170003000000";
constexpr std::uint16_t networkFamily = 0x2E;

Bytes bytesOf(std::string_view digits) {
  Bytes bytes;
  for (std::size_t at = 0; at + 1 < digits.size(); at += 2) {
    unsigned byte = 0;
    std::from_chars(digits.data() + at, digits.data() + at + 2, byte, 16);
    bytes.push_back(static_cast<std::byte>(byte));
  }
  return bytes;
}

/// The same network, marked as the kernel marks the one that is used: by an attribute at the end.
Bytes used(Bytes bytes) {
  constexpr std::size_t networkAt = 48; // the attribute that everything about it lies in
  const Bytes status = bytesOf("0800090001000000");
  for (const std::size_t lengthAt : {std::size_t{0}, networkAt}) {
    bytes[lengthAt] = static_cast<std::byte>(std::to_integer<unsigned>(bytes[lengthAt]) + 8);
  }
  bytes.insert(bytes.end(), status.begin(), status.end());
  return bytes;
}

TEST(WifiRecording, OfAnInterfaceIsRead) {
  EXPECT_EQ(parseWirelessInterfaces(bytesOf(interface), interfaceFamily),
            (Interfaces{{3, std::nullopt}}));
}

TEST(WifiRecording, OfANetworkNamesItWhereItIsUsed) {
  EXPECT_EQ(parseNetworkInUse(bytesOf(network), networkFamily), std::nullopt);
  EXPECT_EQ(parseNetworkInUse(used(bytesOf(network)), networkFamily), "Test-WIFI");
  EXPECT_EQ(parseNetworkInUse(used(bytesOf(network)), networkFamily + 1), std::nullopt);
}

TEST(WifiRecording, OfManyNetworksNamesTheUsedOne) {
  Bytes all = bytesOf(network);
  const Bytes last = used(bytesOf(network));
  all.insert(all.end(), last.begin(), last.end());
  EXPECT_EQ(parseNetworkInUse(all, networkFamily), "Test-WIFI");
}

TEST(WifiRecording, OfBothGivesTheNameToShow) {
  Interfaces interfaces = parseWirelessInterfaces(bytesOf(interface), interfaceFamily);
  ASSERT_EQ(interfaces.size(), 1U);
  interfaces[0].ssid = parseNetworkInUse(used(bytesOf(network)), networkFamily);
  EXPECT_EQ(chooseWifiName(interfaces, 3), "Test-WIFI");
}

TEST(WifiRecording, SurvivesEveryTruncationAndEveryWrongLength) {
  const Bytes whole = used(bytesOf(network));
  forEachTruncation(whole, [](const Bytes& piece) {
    EXPECT_EQ(parseNetworkInUse(piece, networkFamily), std::nullopt);
  });
  std::size_t named = 0;
  for (std::size_t at = 0; at < whole.size(); ++at) {
    for (const int value : {0, 1, 2, 127, 128, 255}) {
      Bytes damaged = whole;
      damaged[at] = static_cast<std::byte>(value);
      const auto name = parseNetworkInUse(damaged, networkFamily);
      EXPECT_TRUE(!name || (!name->empty() && name->size() <= 32)) << at << ' ' << value;
      named += name ? 1 : 0;
    }
  }
  EXPECT_GT(named, 0U);
}

} // namespace
} // namespace tidewell::test
