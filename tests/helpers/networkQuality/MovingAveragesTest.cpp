#include "helpers/networkQuality/MovingAverages.h"

#include <gtest/gtest.h>

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

} // namespace
} // namespace tidewell::test
