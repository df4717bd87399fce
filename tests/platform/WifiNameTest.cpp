#include "platform/linux/network/WifiName.h"

#include "base/Utf8.h"
#include "support/Damage.h"
#include "support/NetlinkMessage.h"

#include <gtest/gtest.h>

#include <charconv>
#include <string>

#include <linux/genetlink.h>
#include <linux/nl80211.h>

namespace tidewell::test {
namespace {

using namespace std::string_view_literals;

constexpr std::uint16_t family = 0x1C;

/// An interface as the kernel describes it, with attributes that are ignored.
NetlinkMessage interface(int index, const char* name, std::uint32_t type = NL80211_IFTYPE_STATION) {
  return NetlinkMessage(family, genlmsghdr{NL80211_CMD_NEW_INTERFACE, 1, 0})
      .number(NL80211_ATTR_IFINDEX, index)
      .text(NL80211_ATTR_IFNAME, name)
      .number(NL80211_ATTR_WIPHY, std::uint32_t{0})
      .number(NL80211_ATTR_IFTYPE, type)
      .number(NL80211_ATTR_WDEV, std::uint64_t{1})
      .data(NL80211_ATTR_MAC, "\x02\x00\x00\x00\x01\x00"sv)
      .number(NL80211_ATTR_GENERATION, std::uint32_t{5})
      .number(NL80211_ATTR_WIPHY_FREQ, std::uint32_t{5180});
}

std::vector<std::byte> onNetwork(int index, const char* name, std::string_view ssid) {
  return interface(index, name).data(NL80211_ATTR_SSID, ssid).bytes();
}

using Bytes = std::vector<std::byte>;
using Interfaces = std::vector<WirelessInterface>;

TEST(WifiMessages, NameTheFamily) {
  const auto reply = NetlinkMessage(GENL_ID_CTRL, genlmsghdr{CTRL_CMD_NEWFAMILY, 2, 0})
                         .text(CTRL_ATTR_FAMILY_NAME, "nl80211")
                         .number(CTRL_ATTR_FAMILY_ID, family)
                         .number(CTRL_ATTR_VERSION, std::uint32_t{1})
                         .bytes();
  EXPECT_EQ(parseFamily(reply), family);
  EXPECT_EQ(parseFamily({}), std::nullopt);
  EXPECT_EQ(parseFamily(onNetwork(3, "wlan0", "Harbour")), std::nullopt);
  forEachTruncation(reply, [](const auto& piece) { EXPECT_EQ(parseFamily(piece), std::nullopt); });
}

TEST(WifiMessages, ListTheClientsInOrder) {
  const auto reply = interface(7, "wlan1").bytes() + onNetwork(3, "wlan0", "Harbour");
  EXPECT_EQ(parseWirelessInterfaces(reply, family),
            (Interfaces{{7, std::nullopt}, {3, "Harbour"}}));
  EXPECT_EQ(parseWirelessInterfaces(reply, family + 1), Interfaces{});
}

TEST(WifiMessages, LeaveOutWhatIsNoClient) {
  const auto reply =
      interface(4, "mon0", NL80211_IFTYPE_MONITOR).bytes() +
      interface(5, "ap0", NL80211_IFTYPE_AP).data(NL80211_ATTR_SSID, "Mine").bytes() +
      interface(0, "", NL80211_IFTYPE_P2P_DEVICE).bytes() +
      NetlinkMessage(family, genlmsghdr{NL80211_CMD_NEW_INTERFACE, 1, 0}).bytes();
  EXPECT_EQ(parseWirelessInterfaces(reply, family), Interfaces{});
}

TEST(WifiMessages, TakeAnyBytesForANameButNoMoreThanThirtyTwoAndNotZerosAlone) {
  const std::string longest(32, '\xFF');
  EXPECT_EQ(parseWirelessInterfaces(onNetwork(3, "wlan0", longest), family),
            (Interfaces{{3, longest}}));
  for (const std::string& ssid :
       {std::string(), std::string(1, '\0'), std::string(7, '\0'), longest + "x"}) {
    EXPECT_EQ(parseWirelessInterfaces(onNetwork(3, "wlan0", ssid), family),
              (Interfaces{{3, std::nullopt}}));
  }
}

TEST(WifiMessages, SurviveEveryTruncationAndRandomDamage) {
  const auto whole = onNetwork(3, "wlan0", "Harbour");
  const auto read = [](const auto& bytes) { return parseWirelessInterfaces(bytes, family).size(); };
  forEachTruncation(whole, [&](const auto& piece) { EXPECT_EQ(read(piece), 0U); });
  EXPECT_GT(
      readDamaged(whole, 4,
                  [&](const auto& bytes) { return read(bytes) + (parseFamily(bytes) ? 1 : 0); }),
      0U);
}

TEST(WifiName, IsThatOfThePrimaryInterface) {
  const Interfaces interfaces{{3, "Harbour"}, {7, "Lighthouse"}};
  EXPECT_EQ(chooseWifiName(interfaces, 7), "Lighthouse");
  EXPECT_EQ(chooseWifiName(interfaces, 3), "Harbour");
  EXPECT_EQ(chooseWifiName({{3, "Harbour"}, {7, std::nullopt}}, 7), std::nullopt);
}

TEST(WifiName, IsThatOfTheFirstOneOnANetworkWhenTheTrafficGoesElsewhere) {
  const Interfaces interfaces{{3, std::nullopt}, {7, "Lighthouse"}, {9, "Harbour"}};
  EXPECT_EQ(chooseWifiName(interfaces, 2), "Lighthouse");
  EXPECT_EQ(chooseWifiName(interfaces, std::nullopt), "Lighthouse");
  EXPECT_EQ(chooseWifiName({{3, std::nullopt}}, std::nullopt), std::nullopt);
  EXPECT_EQ(chooseWifiName({}, 3), std::nullopt);
}

TEST(WifiName, IsFitForALabel) {
  EXPECT_EQ(chooseWifiName({{3, "free\nwifi \xE2\x80\xAE\xFF"}}, 3), "free\uFFFDwifi \uFFFD\uFFFD");
  EXPECT_EQ(chooseWifiName({{3, "<b>&amp;"}}, 3), "<b>&amp;") << "markup is the labels' business";
}

TEST(WifiName, IsAbsentOrTextOnThisMachine) {
  const auto name = askWifiName(std::nullopt);
  EXPECT_TRUE(!name || isUtf8(*name));
}

// Messages of kernels with Wi-Fi, recorded and published by others: the interface with strace in
// 2015, the network with nlmon in 2024.

// The client wlo1; this kernel does not report its network here.
constexpr std::string_view recordedInterface =
    "580000001b00000032fadd54f27b002e07010000080003000300000009000400776c6f310000000008000100"
    "0000000008000500020000000c00990001000000000000000a000600a44e31431c7d000008002e0005000000";
constexpr std::uint16_t interfaceFamily = 0x1B;

// A network in range but not in use.
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

/// The same network, marked as in use by a final attribute.
Bytes used(Bytes bytes) {
  constexpr std::size_t networkAt = 48; // the attribute that contains the others
  const Bytes status = bytesOf("0800090001000000");
  for (const std::size_t lengthAt : {std::size_t{0}, networkAt}) {
    bytes[lengthAt] = static_cast<std::byte>(std::to_integer<unsigned>(bytes[lengthAt]) + 8);
  }
  bytes.insert(bytes.end(), status.begin(), status.end());
  return bytes;
}

TEST(WifiRecording, OfANetworkNamesItWhereItIsUsed) {
  EXPECT_EQ(parseNetworkInUse(bytesOf(network), networkFamily), std::nullopt);
  EXPECT_EQ(parseNetworkInUse(used(bytesOf(network)), networkFamily), "Test-WIFI");
  EXPECT_EQ(parseNetworkInUse(bytesOf(network) + used(bytesOf(network)), networkFamily),
            "Test-WIFI");
  EXPECT_EQ(parseNetworkInUse(used(bytesOf(network)), networkFamily + 1), std::nullopt);
}

TEST(WifiRecording, OfBothGivesTheNameToShow) {
  Interfaces interfaces = parseWirelessInterfaces(bytesOf(recordedInterface), interfaceFamily);
  ASSERT_EQ(interfaces, (Interfaces{{3, std::nullopt}}));
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
