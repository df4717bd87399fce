#include "helpers/networkQuality/RoundTrips.h"

#include <gtest/gtest.h>

namespace tidewell::test {
namespace {

void add(RoundTrips& trips, double now, double seconds) {
  trips.addForeign(now, {seconds, seconds, seconds});
  trips.addSelf(now, seconds);
}

TEST(RoundTrips, AreUnknownWithoutTwoProbesOfEachKind) {
  RoundTrips trips;
  EXPECT_FALSE(trips.since(0.0));
  add(trips, 1.0, 0.02);
  EXPECT_FALSE(trips.since(0.0));
  trips.addForeign(2.0, {0.02, 0.02, 0.02});
  EXPECT_FALSE(trips.since(0.0));
  trips.addSelf(2.0, 0.02);
  EXPECT_TRUE(trips.since(0.0));
}

TEST(RoundTrips, OfTwentyMillisecondsMakeThreeThousandPerMinute) {
  RoundTrips trips;
  for (int count = 0; count < 10; ++count) {
    add(trips, count, 0.02);
  }
  ASSERT_TRUE(trips.since(0.0));
  EXPECT_NEAR(trips.since(0.0)->perMinute(), 3000.0, 1e-6);
}

TEST(RoundTrips, OfBothKindsCountTheSame) {
  RoundTrips trips;
  for (int count = 0; count < 10; ++count) {
    trips.addForeign(count, {0.01, 0.02, 0.03});
    trips.addSelf(count, 0.06);
  }
  EXPECT_NEAR(trips.since(0.0)->perMinute(), (3000.0 + 1000.0) / 2.0, 1e-6);
}

TEST(RoundTrips, ThatEndedBeforeTheWindowAreLeftOut) {
  RoundTrips trips;
  add(trips, 1.0, 5.0);
  add(trips, 1.0, 5.0);
  add(trips, 2.0, 0.02);
  EXPECT_FALSE(trips.since(2.0));
  add(trips, 3.0, 0.02);
  EXPECT_NEAR(trips.since(2.0)->perMinute(), 3000.0, 1e-6);
}

TEST(RoundTrips, ThatTookNoTimeAreNone) {
  RoundTrips trips;
  add(trips, 1.0, 0.0);
  add(trips, 1.0, 0.0);
  EXPECT_FALSE(trips.since(0.0));
}

TEST(RoundTrips, AreNotSpoiltByOneLostPacket) {
  RoundTrips trips;
  for (int count = 0; count < 40; ++count) {
    add(trips, count, count == 20 ? 3.0 : 0.02);
  }
  EXPECT_NEAR(trips.since(0.0)->perMinute(), 3000.0, 1e-6);
}

} // namespace
} // namespace tidewell::test
