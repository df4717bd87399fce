#include "platform/linux/network/DeviceTable.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>

namespace tidewell::test {
namespace {

// As Linux 6 writes it: counters of 64 bits, and a name longer than its column.
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
}

TEST(DeviceTable, ReadsANameThatFillsItsColumn) {
  const auto link = parseDeviceTable(sample, "wlx0123456789ab");
  ASSERT_TRUE(link);
  EXPECT_EQ(link->bytesIn, 17U);
  EXPECT_EQ(link->bytesOut, 18U);
}

TEST(DeviceTable, TellsNamesApartThatBeginAlike) {
  EXPECT_EQ(parseDeviceTable(sample, "eth01")->bytesIn, 5U);
  EXPECT_FALSE(parseDeviceTable(sample, "eth"));
  EXPECT_FALSE(parseDeviceTable(sample, "th0"));
  EXPECT_FALSE(parseDeviceTable(sample, ""));
}

TEST(DeviceTable, KnowsNoDeviceWithoutBothCounters) {
  EXPECT_FALSE(parseDeviceTable("", "eth0"));
  EXPECT_FALSE(parseDeviceTable("eth0:", "eth0"));
  EXPECT_FALSE(parseDeviceTable("eth0: 1 2 3 4 5 6 7 8\n 9\n", "eth0"));
  EXPECT_FALSE(parseDeviceTable("eth0: x 2 3 4 5 6 7 8 9\n", "eth0"));
  EXPECT_FALSE(parseDeviceTable("eth0: -1 2 3 4 5 6 7 8 9\n", "eth0"));
  EXPECT_FALSE(parseDeviceTable("eth0: 99999999999999999999 2 3 4 5 6 7 8 9\n", "eth0"));
  EXPECT_TRUE(parseDeviceTable("eth0: 1 2 3 4 5 6 7 8 9", "eth0"));
}

TEST(DeviceTable, SurvivesEveryTruncationAndRandomDamage) {
  for (std::size_t size = 0; size < sample.size(); ++size) {
    // A copy of exactly that size, so that a sanitizer sees every byte read beyond it.
    const std::string piece(sample.substr(0, size));
    static_cast<void>(parseDeviceTable(piece, "eth01"));
  }
  std::mt19937 random(1);
  int understood = 0;
  for (int round = 0; round < 20'000; ++round) {
    std::string text(sample);
    for (auto changes = 1 + random() % 9; changes > 0; --changes) {
      text[random() % text.size()] = static_cast<char>(random());
    }
    understood += parseDeviceTable(text, "eth0") ? 1 : 0;
  }
  EXPECT_GT(understood, 10'000);
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

} // namespace
} // namespace tidewell::test
