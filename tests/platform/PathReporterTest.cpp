#include "platform/linux/network/PathReporter.h"

#include "support/VirtualScheduler.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tidewell::test {
namespace {

constexpr PathReport wired{true, false, true, false};
constexpr PathReport wireless{true, true, false, false};
constexpr PathReport unsatisfied{};

ObservedPath over(const PathReport& report) { return {report, 2, "eth0", "abcd", "gate", {}, 0}; }

class PathReporterTest : public testing::Test {
protected:
  using Reports = std::vector<PathReport>;

  /// The reports of this many seconds.
  Reports within(Seconds span) {
    reports.clear();
    scheduler.advance(span);
    return reports;
  }
  Reports reportsOf(const ObservedPath& path) {
    reports.clear();
    reporter.observe(path);
    return reports;
  }
  /// The seconds between reports if every lookup fails, or gives the same result.
  std::vector<int> delaysOfLookups(std::size_t count, bool hasAddress = false) {
    std::vector<int> delays;
    while (delays.size() < count) {
      reports.clear();
      reporter.lookedUp(hasAddress);
      int seconds = 0;
      for (; reports.empty() && seconds < 3600; ++seconds) {
        scheduler.advance(1.0);
      }
      delays.push_back(seconds);
    }
    return delays;
  }

  VirtualScheduler scheduler;
  Reports reports;
  PathReporter reporter{scheduler.main(),
                        [this](const auto& report) { reports.push_back(report); }};
};

TEST_F(PathReporterTest, ReportsEachChangeAtOnce) {
  EXPECT_EQ(reportsOf({}), Reports{unsatisfied});
  EXPECT_EQ(reportsOf({}), Reports{});
  EXPECT_EQ(reportsOf(over(wired)), Reports{wired});
  EXPECT_EQ(reportsOf(over(wired)), Reports{});
  EXPECT_EQ(reportsOf(over(wireless)), Reports{wireless});
  EXPECT_EQ(reporter.reported(), wireless);
}

TEST_F(PathReporterTest, ReportsThePathAnewWhenOnlyItsDetailsChanged) {
  ObservedPath path = over(wired);
  reporter.observe(path);
  path.gateway = "door";
  EXPECT_EQ(reportsOf(path), Reports{wired});
  path.dnsServers = {"9.9.9.9"};
  EXPECT_EQ(reportsOf(path), Reports{wired});
  path.dnsChanges = 1;
  EXPECT_EQ(reportsOf(path), Reports{wired});
  path.sourceIPv4 = "bcde";
  EXPECT_EQ(reportsOf(path), Reports{wired});
}

TEST_F(PathReporterTest, ReportsThePathAgainWhileThePublicAddressIsUnknown) {
  reporter.observe(over(wired));
  EXPECT_EQ(delaysOfLookups(6), (std::vector{10, 30, 120, 600, 600, 600}));
  reporter.lookedUp(false);
  reporter.lookedUp(true);
  EXPECT_EQ(within(3600.0), Reports{});
  EXPECT_EQ(delaysOfLookups(2), (std::vector{10, 30})) << "after a success it begins anew";
}

TEST_F(PathReporterTest, CountsLookupsThatFailTogetherOnce) {
  reporter.observe(over(wired));
  reporter.lookedUp(false);
  reporter.lookedUp(false);
  EXPECT_EQ(within(10.0), Reports{wired});
  EXPECT_EQ(delaysOfLookups(1), std::vector{30});
}

TEST_F(PathReporterTest, BeginsTheRetriesAnewOnAnotherPath) {
  reporter.observe(over(wired));
  EXPECT_EQ(delaysOfLookups(3), (std::vector{10, 30, 120}));
  reporter.lookedUp(false);
  reporter.observe(over(wireless));
  EXPECT_EQ(within(3600.0), Reports{});
  EXPECT_EQ(delaysOfLookups(1), std::vector{10});
}

TEST_F(PathReporterTest, ReportsNothingWhileALidIsClosed) {
  reporter.observe(over(wireless));
  reporter.setSleeping(true);
  EXPECT_EQ(reportsOf({}), Reports{});
  scheduler.advance(2.0);
  reporter.setSleeping(false);
  EXPECT_EQ(within(4.0), Reports{});
  EXPECT_EQ(reportsOf(over(wireless)), Reports{});
  EXPECT_EQ(within(4.9), Reports{}) << "not settled yet";
  EXPECT_EQ(within(0.2), Reports{wireless}) << "once, because the machine may be elsewhere";
  EXPECT_EQ(within(3600.0), Reports{});
  EXPECT_EQ(reportsOf({}), Reports{unsatisfied});
}

TEST_F(PathReporterTest, WaitsForALinkThatIsLostOnlyAfterWaking) {
  reporter.observe(over(wireless));
  reporter.setSleeping(true);
  reporter.setSleeping(false);
  scheduler.advance(2.0);
  EXPECT_EQ(reportsOf({}), Reports{});
  EXPECT_EQ(within(10.0), Reports{});
  EXPECT_EQ(reportsOf(over(wireless)), Reports{});
  EXPECT_EQ(within(6.0), Reports{wireless});
}

TEST_F(PathReporterTest, ReportsAnOutageAtWakingOnceItHasLasted) {
  reporter.observe(over(wireless));
  reporter.setSleeping(true);
  reporter.observe({});
  reporter.setSleeping(false);
  EXPECT_EQ(within(PathReporter::longestSettling - 0.1), Reports{});
  EXPECT_EQ(within(3600.0), Reports{unsatisfied});
  EXPECT_EQ(reportsOf(over(wireless)), Reports{wireless});
}

TEST_F(PathReporterTest, DoesNotWaitForeverForALinkThatNeverSettles) {
  reporter.observe(over(wireless));
  reporter.setSleeping(true);
  reporter.setSleeping(false);
  reports.clear();
  for (int second = 0; second < 40; ++second) {
    scheduler.advance(1.0);
    reporter.observe(over(second % 2 == 0 ? wired : wireless));
  }
  EXPECT_EQ(reports.size(), 12U) << "at thirty seconds, then each change";
}

TEST_F(PathReporterTest, TakesTheMachineForAwakeWhenNoSecondSignalComes) {
  reporter.observe(over(wireless));
  reporter.setSleeping(true);
  reporter.observe({});
  EXPECT_EQ(within(PathReporter::longestFallingAsleep + PathReporter::longestSettling - 0.1),
            Reports{});
  EXPECT_EQ(within(0.2), Reports{unsatisfied});
}

TEST_F(PathReporterTest, FallsAsleepAgainBeforeTheLinkHasSettled) {
  reporter.observe(over(wireless));
  reporter.setSleeping(true);
  reporter.setSleeping(false);
  scheduler.advance(4.0);
  reporter.setSleeping(true);
  EXPECT_EQ(within(30.0), Reports{});
  reporter.setSleeping(false);
  EXPECT_EQ(within(5.0), Reports{wireless});
}

TEST_F(PathReporterTest, LooksUpNothingWhileTheLidIsClosed) {
  reporter.observe(over(wireless));
  reporter.lookedUp(false);
  reporter.setSleeping(true);
  reporter.lookedUp(false);
  EXPECT_EQ(within(50.0), Reports{});
}

TEST_F(PathReporterTest, TakesASecondSignalWithoutAFirstForNothing) {
  reporter.setSleeping(false);
  EXPECT_EQ(within(3600.0), Reports{});
  reporter.lookedUp(false);
  EXPECT_EQ(within(3600.0), Reports{}) << "there is no path yet";
}

} // namespace
} // namespace tidewell::test
