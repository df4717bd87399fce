#include "platform/linux/network/WifiName.h"

#include "base/Utf8.h"
#include "support/Damage.h"
#include "support/NetlinkMessage.h"

#include <gtest/gtest.h>

#include <string>

#include <linux/genetlink.h>
#include <linux/nl80211.h>

namespace tidewell::test {
namespace {

using namespace std::string_view_literals;

constexpr std::uint16_t family = 0x1C;

/// An interface as the kernel describes it: with more about it than we ask for.
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

TEST(WifiMessages, KnowNoNameOfANetworkThatHidesIt) {
  for (const auto ssid : {""sv, "\0"sv, "\0\0\0\0\0\0\0"sv}) {
    EXPECT_EQ(parseWirelessInterfaces(onNetwork(3, "wlan0", ssid), family),
              (Interfaces{{3, std::nullopt}}));
  }
}

TEST(WifiMessages, TakeAnyBytesForANameButNoMoreThanThirtyTwo) {
  const std::string longest(32, '\xFF');
  EXPECT_EQ(parseWirelessInterfaces(onNetwork(3, "wlan0", longest), family),
            (Interfaces{{3, longest}}));
  EXPECT_EQ(parseWirelessInterfaces(onNetwork(3, "wlan0", longest + "x"), family),
            (Interfaces{{3, std::nullopt}}));
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

} // namespace
} // namespace tidewell::test
