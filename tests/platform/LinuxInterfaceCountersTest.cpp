#include "platform/linux/network/LinuxInterfaceCounters.h"

#include <gtest/gtest.h>

#include <map>

namespace tidewell::test {
namespace {

constexpr ByteCounts zero{0, 0};

class LinuxInterfaceCountersTest : public testing::Test {
protected:
  std::map<std::string, LinkRecord> links{{"eth0", {2, "eth0", 700'000'000'000, 90'000'000'000}},
                                          {"wlan0", {3, "wlan0", 5'000, 4'000}}};
  LinuxInterfaceCounters counters{[this](const std::string& name) {
    const auto found = links.find(name);
    return found == links.end() ? std::nullopt : std::optional(found->second);
  }};

  void move(const char* name, std::uint64_t in, std::uint64_t out) {
    links[name].bytesIn += in;
    links[name].bytesOut += out;
  }
};

TEST_F(LinuxInterfaceCountersTest, StartsCountingAtZero) {
  EXPECT_EQ(counters.read("eth0"), zero);
  move("eth0", 300, 20);
  EXPECT_EQ(counters.read("eth0"), (ByteCounts{300, 20}));
  move("eth0", 1, 1);
  EXPECT_EQ(counters.read("eth0"), (ByteCounts{301, 21}));
}

TEST_F(LinuxInterfaceCountersTest, StartsAgainWhenAnotherInterfaceIsRead) {
  static_cast<void>(counters.read("eth0"));
  move("eth0", 300, 20);
  EXPECT_EQ(counters.read("wlan0"), zero);
  move("wlan0", 8, 9);
  EXPECT_EQ(counters.read("wlan0"), (ByteCounts{8, 9}));
  move("eth0", 1'000'000, 1'000'000);
  EXPECT_EQ(counters.read("eth0"), zero) << "what it moved unseen is no traffic of now";
}

TEST_F(LinuxInterfaceCountersTest, StartsAgainWhenTheInterfaceWasMadeAnew) {
  static_cast<void>(counters.read("eth0"));
  links["eth0"] = {9, "eth0", 800'000'000'000, 100'000'000'000};
  EXPECT_EQ(counters.read("eth0"), zero);
  move("eth0", 5, 6);
  EXPECT_EQ(counters.read("eth0"), (ByteCounts{5, 6}));
}

TEST_F(LinuxInterfaceCountersTest, StartsAgainWhenACounterFell) {
  static_cast<void>(counters.read("eth0"));
  move("eth0", 500, 500);
  static_cast<void>(counters.read("eth0"));
  links["eth0"].bytesOut = 3;
  EXPECT_EQ(counters.read("eth0"), zero);
  move("eth0", 7, 8);
  EXPECT_EQ(counters.read("eth0"), (ByteCounts{7, 8}));
  links["eth0"].bytesIn = 3;
  EXPECT_EQ(counters.read("eth0"), zero) << "received ones, too";
}

TEST_F(LinuxInterfaceCountersTest, StartsAgainWhenTheInterfaceWasRenamed) {
  static_cast<void>(counters.read("eth0"));
  links["lan0"] = links["eth0"];
  links["lan0"].name = "lan0";
  move("lan0", 500, 500);
  EXPECT_EQ(counters.read("lan0"), zero) << "the same index, another name";
}

TEST_F(LinuxInterfaceCountersTest, StartsAgainAfterAReadingThatFailed) {
  static_cast<void>(counters.read("eth0"));
  move("eth0", 1'000'000'000, 0);
  const auto gone = links.extract("eth0");
  EXPECT_EQ(counters.read("eth0"), std::nullopt);
  links["eth0"] = gone.mapped();
  EXPECT_EQ(counters.read("eth0"), zero);
}

} // namespace
} // namespace tidewell::test
