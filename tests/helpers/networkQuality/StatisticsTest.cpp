#include "helpers/networkQuality/Statistics.h"

#include <gtest/gtest.h>

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
}

TEST(Statistics, ATrimmedMeanOfFewValuesLeavesOutTheHighest) {
  EXPECT_EQ(trimmedMean({3.0}), 3.0);
  EXPECT_EQ(trimmedMean({5.0, 3.0}), 3.0);
  EXPECT_EQ(trimmedMean({1.0, 9.0, 2.0}), 1.5);
}

TEST(Statistics, ATrimmedMeanKeepsNinetyFiveOfAHundred) {
  std::vector<double> values(100);
  std::iota(values.rbegin(), values.rend(), 1.0);
  EXPECT_EQ(trimmedMean(values), 48.0);
}

TEST(Statistics, ValuesThatStayWithinFivePercentAreSteady) {
  EXPECT_TRUE(isSteady(std::vector{100.0, 104.0, 96.0, 100.0}, 0.05));
  EXPECT_FALSE(isSteady(std::vector{100.0, 110.0, 90.0, 100.0}, 0.05));
}

TEST(Statistics, ZerosAreNotSteady) {
  EXPECT_FALSE(isSteady(std::vector{0.0, 0.0, 0.0, 0.0}, 0.05)) << "nothing was measured";
  EXPECT_FALSE(isSteady({}, 0.05));
}

} // namespace
} // namespace tidewell::test
