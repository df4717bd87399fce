#include "helpers/networkQuality/ProbePace.h"

#include <gtest/gtest.h>

namespace tidewell::test {
namespace {

TEST(ProbePace, IsTwentyPairsASecondOnAFastLine) {
  EXPECT_EQ(ProbePace().interval(12.5e6), 0.05);
  EXPECT_EQ(ProbePace().interval(125e6), 0.05);
}

TEST(ProbePace, TakesFivePercentOfASlowLine) {
  EXPECT_DOUBLE_EQ(ProbePace().interval(125'000.0), 6000.0 / 6250.0);
}

TEST(ProbePace, GoesByWhatProbesReallyTake) {
  ProbePace pace;
  pace.addProbe(0.02, 1500.0);
  pace.addProbe(0.02, 2500.0);
  EXPECT_DOUBLE_EQ(pace.interval(125'000.0), 3000.0 / 6250.0);
}

TEST(ProbePace, IsThreePairsInALongRoundTrip) {
  ProbePace pace;
  pace.addProbe(0.1, 5000.0);
  EXPECT_EQ(pace.interval(12.5e6), 0.05);
  pace.addProbe(0.6, 5000.0);
  EXPECT_DOUBLE_EQ(pace.interval(12.5e6), 0.2);
}

TEST(ProbePace, IsAnEternityOnALineThatMovesNothing) {
  EXPECT_GT(ProbePace().interval(0.0), 3600.0);
  EXPECT_GT(ProbePace().interval(-1.0), 3600.0);
}

} // namespace
} // namespace tidewell::test
