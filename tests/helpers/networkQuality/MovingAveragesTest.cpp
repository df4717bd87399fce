#include "helpers/networkQuality/MovingAverages.h"

#include <gtest/gtest.h>

#include <initializer_list>

namespace tidewell::test {
namespace {

TEST(MovingAverages, AreSteadyOnceFourOfThemAgree) {
  MovingAverages averages;
  for (int count = 1; count <= 3; ++count) {
    averages.add(100.0);
    EXPECT_FALSE(averages.isSteady()) << count;
  }
  averages.add(101.0);
  EXPECT_TRUE(averages.isSteady());
  EXPECT_EQ(averages.steadySince(), 4U);
}

TEST(MovingAverages, StaySteadySinceTheSameInterval) {
  MovingAverages averages;
  for (int count = 0; count < 9; ++count) {
    averages.add(100.0 + count * 0.1);
  }
  EXPECT_EQ(averages.steadySince(), 4U);
}

TEST(MovingAverages, AreNoLongerSteadyWhenOneDeviates) {
  MovingAverages averages;
  for (int count = 0; count < 4; ++count) {
    averages.add(100.0);
  }
  averages.add(200.0);
  EXPECT_FALSE(averages.isSteady());
  for (int count = 0; count < 3; ++count) {
    averages.add(200.0);
  }
  EXPECT_EQ(averages.steadySince(), 8U);
}

TEST(MovingAverages, StartAnewAfterAnIntervalWithoutAValue) {
  MovingAverages averages;
  for (int count = 0; count < 4; ++count) {
    averages.add(100.0);
  }
  averages.add(std::nullopt);
  EXPECT_FALSE(averages.isSteady());
  for (int count = 0; count < 3; ++count) {
    averages.add(100.0);
    EXPECT_FALSE(averages.isSteady());
  }
  averages.add(100.0);
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
