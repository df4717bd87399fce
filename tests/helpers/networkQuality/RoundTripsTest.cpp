#include "helpers/networkQuality/RoundTrips.h"

#include <gtest/gtest.h>

namespace tidewell::test {
namespace {

class RoundTripsTest : public testing::Test {
protected:
  void add(double now, double seconds) {
    trips.addForeign(now, {seconds, seconds, seconds});
    trips.addSelf(now, seconds);
  }
  double perMinute(double begin = 0.0) {
    const auto means = trips.since(begin);
    return means ? means->perMinute() : 0.0;
  }
  RoundTrips trips;
};

TEST_F(RoundTripsTest, AreUnknownWithoutTwoProbesOfEachKind) {
  EXPECT_FALSE(trips.since(0.0));
  add(1.0, 0.02);
  EXPECT_FALSE(trips.since(0.0));
  trips.addForeign(2.0, {0.02, 0.02, 0.02});
  EXPECT_FALSE(trips.since(0.0));
  trips.addSelf(2.0, 0.02);
  EXPECT_NEAR(perMinute(), 3000.0, 1e-6);
}

TEST_F(RoundTripsTest, OfBothKindsCountTheSame) {
  for (int count = 0; count < 10; ++count) {
    trips.addForeign(count, {0.01, 0.02, 0.03});
    trips.addSelf(count, 0.06);
  }
  EXPECT_NEAR(perMinute(), (3000.0 + 1000.0) / 2.0, 1e-6);
}

TEST_F(RoundTripsTest, ThatEndedBeforeTheWindowAreLeftOut) {
  add(1.0, 5.0);
  add(1.0, 5.0);
  add(2.0, 0.02);
  EXPECT_FALSE(trips.since(2.0));
  add(3.0, 0.02);
  EXPECT_NEAR(perMinute(2.0), 3000.0, 1e-6);
}

TEST_F(RoundTripsTest, ThatTookNoTimeAreNone) {
  add(1.0, 0.0);
  add(1.0, 0.0);
  EXPECT_FALSE(trips.since(0.0));
}

TEST_F(RoundTripsTest, AreNotSpoiltByOneLostPacket) {
  for (int count = 0; count < 40; ++count) {
    add(count, count == 20 ? 3.0 : 0.02);
  }
  EXPECT_NEAR(perMinute(), 3000.0, 1e-6);
}

TEST(ProbePace, IsTwentyPairsASecondOnAFastLineAndFivePercentOfASlowOne) {
  EXPECT_EQ(ProbePace().interval(12.5e6), 0.05);
  EXPECT_EQ(ProbePace().interval(125e6), 0.05);
  EXPECT_DOUBLE_EQ(ProbePace().interval(125'000.0), 6000.0 / 6250.0);
  EXPECT_GT(ProbePace().interval(0.0), 3600.0);
  EXPECT_GT(ProbePace().interval(-1.0), 3600.0);
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

} // namespace
} // namespace tidewell::test
