#include "platform/linux/network/DeviceTable.h"

#include "support/Damage.h"
#include "support/ScarceDescriptors.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace tidewell::test {
namespace {

// As Linux 6 writes it: 64-bit counters, and a name longer than its column.
constexpr std::string_view sample =
    "Inter-|   Receive                                                |  Transmit\n"
    " face |bytes    packets errs drop fifo frame compressed multicast|bytes    packets errs\n"
    "    lo:     240       2    0    0    0     0          0         0      240       2    0 0 0 0 "
    "0 0\n"
    "  eth0: 10000000000000 38 0 0 0 0 0 0 5000000000 21 0 0 0 0 0 0\n"
    "wlx0123456789ab:17 1 0 0 0 0 0 0 18 1 0 0 0 0 0 0\n"
    "  eth01: 5 1 0 0 0 0 0 0 6 1 0 0 0 0 0 0\n";

TEST(DeviceTable, ReadsCountersWiderThanThirtyTwoBits) {
  const auto link = parseDeviceTable(sample, "eth0");
  ASSERT_TRUE(link);
  EXPECT_EQ(link->name, "eth0");
  EXPECT_EQ(link->bytesIn, 10'000'000'000'000U);
  EXPECT_EQ(link->bytesOut, 5'000'000'000U);
  EXPECT_EQ(link->packetsIn, 38U);
  EXPECT_EQ(link->packetsOut, 21U);
}

TEST(DeviceTable, TellsNamesApartThatBeginAlike) {
  EXPECT_EQ(parseDeviceTable(sample, "eth01")->bytesIn, 5U);
  EXPECT_EQ(parseDeviceTable(sample, "wlx0123456789ab")->bytesIn, 17U) << "a name of full length";
  EXPECT_FALSE(parseDeviceTable(sample, "eth"));
  EXPECT_FALSE(parseDeviceTable(sample, "th0"));
  EXPECT_FALSE(parseDeviceTable(sample, ""));
}

TEST(DeviceTable, KnowsNoDeviceWithoutAllCounters) {
  EXPECT_FALSE(parseDeviceTable("", "eth0"));
  EXPECT_FALSE(parseDeviceTable("eth0:", "eth0"));
  EXPECT_FALSE(parseDeviceTable("eth0: 1 2 3 4 5 6 7 8\n 9\n", "eth0"));
  EXPECT_FALSE(parseDeviceTable("eth0: x 2 3 4 5 6 7 8 9 10\n", "eth0"));
  EXPECT_FALSE(parseDeviceTable("eth0: -1 2 3 4 5 6 7 8 9 10\n", "eth0"));
  EXPECT_FALSE(parseDeviceTable("eth0: 99999999999999999999 2 3 4 5 6 7 8 9 10\n", "eth0"));
  EXPECT_FALSE(parseDeviceTable("eth0: 1 x 3 4 5 6 7 8 9 10\n", "eth0"));
  EXPECT_FALSE(parseDeviceTable("eth0: 1 2 3 4 5 6 7 8 9", "eth0"));
  EXPECT_TRUE(parseDeviceTable("eth0: 1 2 3 4 5 6 7 8 9 10", "eth0"));
}

TEST(DeviceTable, SurvivesEveryTruncationAndRandomDamage) {
  const std::string whole(sample);
  const auto read = [](const std::string& text, std::string_view name) {
    return parseDeviceTable(text, name) ? 1 : 0;
  };
  forEachTruncation(whole, [&](const auto& piece) { static_cast<void>(read(piece, "eth01")); });
  EXPECT_GT(readDamaged(whole, 9, [&](const auto& text) { return read(text, "eth0"); }), 10'000U);
}

TEST(DeviceTable, HoldsTheLoopbackAndNothingThatDoesNotExist) {
  DeviceTable table;
  const auto loopback = table.device("lo");
  ASSERT_TRUE(loopback);
  EXPECT_EQ(loopback->index, 1);
  EXPECT_EQ(loopback->name, "lo");
  EXPECT_FALSE(table.device("nothing0"));
  EXPECT_FALSE(table.device(""));
  EXPECT_FALSE(table.device(std::string(1000, 'x')));
}

TEST(DeviceTable, IsReadAsSoonAsThereAreDescriptorsAgain) {
  DeviceTable table;
  {
    const ScarceDescriptors scarce;
    EXPECT_FALSE(table.device("lo"));
  }
  EXPECT_TRUE(table.device("lo"));
}

} // namespace
} // namespace tidewell::test
