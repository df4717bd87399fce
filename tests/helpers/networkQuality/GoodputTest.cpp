#include "helpers/networkQuality/Goodput.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>

namespace tidewell::test {
namespace {

constexpr std::uint64_t megabyte = 1'000'000;

/// A line that moves a given amount in each second.
class SteppedLine {
public:
  void second(std::uint64_t bytes) {
    moved += bytes;
    goodput.endInterval(time += 1.0, moved);
  }
  void seconds(int count, std::uint64_t bytes) {
    for (int index = 0; index < count; ++index) {
      second(bytes);
    }
  }

  double time = 1000.0;
  std::uint64_t moved = 77;
  Goodput goodput{time, moved};
};

TEST(Goodput, IsZeroBeforeTheFirstIntervalHasEnded) {
  const Goodput goodput(5.0, 1000);
  EXPECT_EQ(goodput.current(), 0.0);
  EXPECT_EQ(goodput.capacity(), 0.0);
  EXPECT_FALSE(goodput.isSaturated());
  EXPECT_FALSE(goodput.isStalled());
}

TEST(Goodput, IsTheMeanOfTheLastFourIntervals) {
  SteppedLine line;
  line.second(4 * megabyte);
  EXPECT_EQ(line.goodput.current(), 4e6);
  line.second(2 * megabyte);
  EXPECT_EQ(line.goodput.current(), 3e6);
  line.seconds(3, megabyte);
  EXPECT_EQ(line.goodput.current(), 1.25e6);
  Goodput slow(0.0, 0);
  slow.endInterval(1.5, 3 * megabyte);
  EXPECT_EQ(slow.current(), 2e6) << "by the time that an interval really took";
}

TEST(Goodput, OfASteadyLineIsSaturatedWhenFourAveragesAgree) {
  SteppedLine line;
  line.seconds(6, megabyte);
  EXPECT_FALSE(line.goodput.isSaturated());
  line.second(megabyte);
  EXPECT_TRUE(line.goodput.isSaturated());
  EXPECT_EQ(line.goodput.capacity(), 1e6);
}

TEST(Goodput, OfALineThatGrowsIsNotSaturated) {
  SteppedLine line;
  for (std::uint64_t second = 1; second < 20; ++second) {
    line.second(second * second * megabyte);
    EXPECT_FALSE(line.goodput.isSaturated());
  }
}

TEST(Goodput, LeavesASlowStartOutOfTheCapacity) {
  SteppedLine line;
  line.second(megabyte / 10);
  line.second(megabyte / 2);
  line.seconds(10, megabyte);
  ASSERT_TRUE(line.goodput.isSaturated());
  EXPECT_NEAR(line.goodput.capacity(), 1e6, 0.06e6);
}

TEST(Goodput, TakesEverythingSinceTheLineSettledForItsCapacity) {
  SteppedLine line;
  line.seconds(7, 100);
  line.seconds(30, megabyte);
  ASSERT_TRUE(line.goodput.isSaturated());
  EXPECT_EQ(line.goodput.loadedSince(100), 1010.0);
  EXPECT_EQ(line.goodput.loadedSince(8), 1029.0);
  EXPECT_EQ(line.goodput.windowBytes(), 27e6);
  EXPECT_EQ(line.goodput.capacity(), 1e6);
}

TEST(Goodput, IsNotMisledByPacketsThatWaitForALostOne) {
  // 125,000 bytes a second, of which the last 60,000 are not counted for half of the time.
  constexpr double rate = 125'000.0;
  for (const double shift : {0.0, 0.3, 0.6, 0.9, 1.2}) {
    const auto count = [&](double time) {
      const bool isMissing = std::fmod(time + shift, 1.4) < 0.7;
      return static_cast<std::uint64_t>(rate * time + (isMissing ? 40'000.0 : 100'000.0));
    };
    Goodput goodput(0.0, count(0.0));
    for (int tenth = 1; tenth <= 140; ++tenth) {
      const double time = tenth / 10.0;
      goodput.sample(time, count(time));
      if (tenth % 10 == 0) {
        goodput.endInterval(time, count(time));
      }
    }
    EXPECT_NEAR(goodput.capacity(), rate, rate * 0.001) << shift;
  }
}

TEST(Goodput, TakesTheLastFourIntervalsOfALineThatNeverSettles) {
  SteppedLine line;
  for (std::uint64_t second = 0; second < 12; ++second) {
    line.second(second < 8 ? megabyte : second * second * megabyte);
  }
  ASSERT_FALSE(line.goodput.isSaturated());
  EXPECT_EQ(line.goodput.windowBytes(), (8 * 8 + 9 * 9 + 10 * 10 + 11 * 11) * 1e6);
  EXPECT_EQ(line.goodput.loadedSince(8), 1004.0);
}

TEST(Goodput, TakesMoreOfASlowLineThatNeverSettles) {
  SteppedLine line;
  line.seconds(3, 1'000);
  for (int second = 0; second < 15; ++second) {
    line.second(second % 6 < 3 ? 40'000 : 160'000);
  }
  ASSERT_FALSE(line.goodput.isSaturated());
  EXPECT_LT(line.goodput.loadedSince(4), 1008.0);
  EXPECT_GE(line.goodput.windowBytes(), Goodput::leastWindow);
  EXPECT_NEAR(line.goodput.capacity(), 100e3, 15e3);
}

TEST(Goodput, LeavesTheFirstThreeIntervalsOutAlsoWhereTooLittleIsThere) {
  SteppedLine line;
  line.seconds(3, 500'000);
  for (std::uint64_t second = 0; second < 5; ++second) {
    line.second(20'000 * (1 + second));
  }
  ASSERT_FALSE(line.goodput.isSaturated());
  EXPECT_EQ(line.goodput.loadedSince(4), 1003.0);
}

TEST(Goodput, OfALineThatStopsOrNeverStartsIsStalledAfterFourIntervals) {
  for (const int good : {9, 0}) {
    SteppedLine line;
    line.seconds(good, megabyte);
    line.seconds(3, 0);
    EXPECT_FALSE(line.goodput.isStalled());
    line.second(100);
    EXPECT_TRUE(line.goodput.isStalled());
  }
}

} // namespace
} // namespace tidewell::test
