#include "helpers/networkQuality/Statistics.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <numeric>
#include <vector>

namespace tidewell::test {
namespace {

TEST(Statistics, TheMeanOfNothingIsZero) {
  EXPECT_EQ(mean({}), 0.0);
  EXPECT_EQ(trimmedMean({}), 0.0);
}

TEST(Statistics, ATrimmedMeanLeavesOutTheHighestTwentieth) {
  std::vector<double> values(19, 10.0);
  values.insert(values.begin(), 1e9);
  EXPECT_EQ(trimmedMean(values), 10.0);
  std::vector<double> hundred(100);
  std::iota(hundred.rbegin(), hundred.rend(), 1.0);
  EXPECT_EQ(trimmedMean(hundred), 48.0) << "of a hundred it keeps 95";
}

TEST(Statistics, ATrimmedMeanOfFewValuesLeavesOutTheHighest) {
  EXPECT_EQ(trimmedMean({3.0}), 3.0);
  EXPECT_EQ(trimmedMean({5.0, 3.0}), 3.0);
  EXPECT_EQ(trimmedMean({1.0, 9.0, 2.0}), 1.5);
}

TEST(Statistics, ValuesThatStayWithinFivePercentAreSteady) {
  EXPECT_TRUE(isSteady(std::vector{100.0, 104.0, 96.0, 100.0}, 0.05));
  EXPECT_FALSE(isSteady(std::vector{100.0, 110.0, 90.0, 100.0}, 0.05));
  EXPECT_FALSE(isSteady(std::vector{0.0, 0.0, 0.0, 0.0}, 0.05)) << "nothing was measured";
  EXPECT_FALSE(isSteady({}, 0.05));
}

class MovingAveragesTest : public testing::Test {
protected:
  void add(int count, double average) {
    for (; count > 0; --count) {
      averages.add(average);
    }
  }
  MovingAverages averages;
};

TEST_F(MovingAveragesTest, AreSteadyOnceFourOfThemAgree) {
  for (int count = 1; count <= 3; ++count) {
    add(1, 100.0);
    EXPECT_FALSE(averages.isSteady()) << count;
  }
  add(1, 101.0);
  EXPECT_TRUE(averages.isSteady());
  EXPECT_EQ(averages.steadySince(), 4U);
  for (int count = 0; count < 5; ++count) {
    add(1, 100.0 + count * 0.1);
  }
  EXPECT_EQ(averages.steadySince(), 4U) << "and stay so since the same interval";
}

TEST_F(MovingAveragesTest, AreNoLongerSteadyWhenOneDeviates) {
  add(4, 100.0);
  add(1, 200.0);
  EXPECT_FALSE(averages.isSteady());
  add(3, 200.0);
  EXPECT_EQ(averages.steadySince(), 8U);
}

TEST_F(MovingAveragesTest, StartAnewAfterAnIntervalWithoutAValue) {
  add(4, 100.0);
  averages.add(std::nullopt);
  EXPECT_FALSE(averages.isSteady());
  add(3, 100.0);
  EXPECT_FALSE(averages.isSteady());
  add(1, 100.0);
  EXPECT_EQ(averages.steadySince(), 9U);
}

TEST(MovingAverages, DriftWhenEachIsFurtherAndAllOfThemFar) {
  const auto drifts = [](std::initializer_list<double> averages) {
    MovingAverages moving;
    for (const double average : averages) {
      moving.add(average);
    }
    return moving.isDrifting();
  };
  EXPECT_TRUE(drifts({109.0, 106.0, 103.0, 100.0}));
  EXPECT_TRUE(drifts({100.0, 103.0, 106.0, 109.0}));
  EXPECT_TRUE(drifts({90.0, 109.0, 106.0, 103.0, 100.0})) << "four are enough";
  EXPECT_TRUE(drifts({109.0, 107.0, 105.0, 102.0, 100.0})) << "far in five";
  EXPECT_FALSE(drifts({120.0, 107.0, 106.0, 104.0, 101.0, 100.0})) << "not far in five";
  EXPECT_FALSE(drifts({107.0, 105.0, 102.0, 100.0})) << "not far in four";
  EXPECT_FALSE(drifts({99.0, 107.0, 105.0, 102.0, 100.0})) << "to and fro before";
  EXPECT_FALSE(drifts({109.0, 103.0, 106.0, 100.0})) << "to and fro";
  EXPECT_FALSE(drifts({109.0, 104.0, 100.0})) << "too few";
}

} // namespace
} // namespace tidewell::test
