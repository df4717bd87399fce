#include "helpers/networkQuality/LineMeasurement.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

namespace tidewell::test {
namespace {

/// A line in virtual time: what it moves in a second depends on the second and on the load.
struct Line {
  std::function<double(int second, double connections)> bytes;
  std::function<double(int second)> roundTrip = [](int) { return 0.02; };

  /// Runs until the measurement is done, or for so long.
  LineMeasurement run(int seconds) const {
    LineMeasurement line(0.0, 0);
    double moved = 0.0;
    for (int second = 0; second < seconds && !line.isDone() && !line.isStalled(); ++second) {
      for (int probe = 0; probe < 10 && roundTrip(second) > 0.0; ++probe) {
        const double trip = roundTrip(second);
        line.addForeign(second + probe * 0.1, {trip, trip, trip}, 5000.0);
        line.addSelf(second + probe * 0.1, trip);
      }
      moved += bytes(second, static_cast<double>(line.connections()));
      line.endInterval(second + 1.0, static_cast<std::uint64_t>(moved));
      ended = second + 1;
    }
    return line;
  }

  mutable int ended = 0;
};

TEST(LineMeasurement, OfASteadyLineIsDoneWhenBothKindsOfAveragesAgree) {
  const Line line{[](int, double) { return 12.5e6; }};
  const LineMeasurement measured = line.run(30);
  EXPECT_TRUE(measured.isDone());
  EXPECT_EQ(line.ended, 7);
  EXPECT_EQ(measured.result()->bytesPerSecond, 12.5e6);
  EXPECT_NEAR(measured.result()->roundTrips->perMinute(), 3000.0, 1e-6);
  EXPECT_EQ(measured.result()->confidence, Confidence::high);
}

TEST(LineMeasurement, HasAsManyConnectionsAsTheLineFeedsAfterASecond) {
  // Each connection reaches three megabytes a second, the line ten.
  const Line line{[](int, double connections) { return std::min(connections * 3e6, 10e6); }};
  EXPECT_EQ(line.run(0).connections(), 1U);
  EXPECT_EQ(line.run(1).connections(), 8U);
  const LineMeasurement measured = line.run(30);
  EXPECT_TRUE(measured.isDone());
  EXPECT_NEAR(measured.result()->bytesPerSecond, 10e6, 0.2e6);
}

TEST(LineMeasurement, AddsConnectionsAsALineThatBeginsSlowlyGetsFaster) {
  const Line line{[](int second, double) { return 100e3 * (second + 1); }};
  EXPECT_EQ(line.run(1).connections(), 2U);
  EXPECT_EQ(line.run(3).connections(), 3U) << "two hundred kilobytes a second on average";
  EXPECT_EQ(line.run(18).connections(), 8U);
  const Line fast{
      [](int second, double connections) { return connections * (second + 1.0) * 1e6; }};
  EXPECT_EQ(fast.run(18).connections(), 8U) << "and never more";
}

TEST(LineMeasurement, TakesLongerOnASlowLineAndAddsNoConnectionThatWouldOnlyTakeFromOthers) {
  const Line line{[](int, double) { return 120e3; }};
  const LineMeasurement measured = line.run(30);
  EXPECT_TRUE(measured.isDone());
  EXPECT_EQ(measured.connections(), 2U);
  EXPECT_EQ(line.ended, 14) << "eleven seconds of it, after three that count for nothing";
}

TEST(LineMeasurement, WaitsForTheRoundTripsToSettle) {
  const Line line{[](int, double) { return 12.5e6; },
                  [](int second) { return second < 9 ? 0.01 * (1 + second % 3) : 0.02; }};
  const LineMeasurement measured = line.run(40);
  EXPECT_TRUE(measured.isDone());
  EXPECT_GT(line.ended, 10);
}

TEST(LineMeasurement, WaitsUntilAQueueHasFilledAndTellsItsRoundTrips) {
  const Line line{[](int, double) { return 12.5e6; },
                  [](int second) { return 0.2 + 0.02 * std::min(second, 15); }};
  const LineMeasurement measured = line.run(40);
  EXPECT_TRUE(measured.isDone());
  EXPECT_GE(line.ended, 17) << "the averages grow by 3 to 5 percent a second until then";
  EXPECT_LT(measured.result()->roundTrips->perMinute(), 60.0 / 0.46);
}

TEST(LineMeasurement, IsNotDoneWithoutRoundTripsAndTellsNone) {
  const Line line{[](int, double) { return 12.5e6; }, [](int) { return 0.0; }};
  const LineMeasurement measured = line.run(18);
  EXPECT_FALSE(measured.isDone());
  EXPECT_EQ(measured.result()->bytesPerSecond, 12.5e6);
  EXPECT_FALSE(measured.result()->roundTrips);
  EXPECT_EQ(measured.result()->confidence, Confidence::medium);
}

TEST(LineMeasurement, TellsNothingBeforeTheFirstSecondAndLittleBeforeTheFourth) {
  const Line line{[](int, double) { return 12.5e6; }};
  EXPECT_FALSE(line.run(0).result());
  EXPECT_EQ(line.run(3).result()->confidence, Confidence::low);
  EXPECT_EQ(line.run(4).result()->confidence, Confidence::medium);
}

TEST(LineMeasurement, NoticesThatNothingMovesAnyMore) {
  const Line line{[](int second, double) { return second < 5 ? second * 1e6 : 0.0; }};
  EXPECT_TRUE(line.run(30).isStalled());
  EXPECT_EQ(line.ended, 9);
  EXPECT_TRUE(Line{[](int, double) { return 10.0; }}.run(30).isStalled()) << "a trickle, too";
}

TEST(LineMeasurement, ProbesAsOftenAsTheLineAffords) {
  EXPECT_EQ(Line{[](int, double) { return 12.5e6; }}.run(5).probeInterval(), 0.05);
  EXPECT_GT(Line{[](int, double) { return 12.5e3; }}.run(5).probeInterval(), 5.0);
  EXPECT_GT(Line{[](int, double) { return 0.0; }}.run(1).probeInterval(), 3600.0);
}

} // namespace
} // namespace tidewell::test
