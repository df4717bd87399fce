#include "base/QueueCore.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace tidewell::test {
namespace {

using namespace std::chrono_literals;

class QueueCoreTest : public testing::Test {
protected:
  QueueCore core;
  std::string order;

  Task note(char mark) {
    return [this, mark] { order += mark; };
  }
  std::string runAll(Ticks now) {
    order.clear();
    while (const auto work = core.take(now)) {
      runAtOnce(*work);
    }
    return order;
  }
};

TEST_F(QueueCoreTest, RunsInTheOrderOfPosting) {
  core.post(note('a'));
  core.post(note('b'));
  EXPECT_EQ(runAll(0s), "ab");
}

TEST_F(QueueCoreTest, RunsWhatWasPostedBeforeATimerFellDueFirst) {
  core.add(1s, 0s, note('t'));
  core.post(note('a'));
  EXPECT_EQ(runAll(2s), "at");
}

TEST_F(QueueCoreTest, FiresTimersInTheOrderOfTheirTimesAndThenOfTheirAges) {
  core.add(2s, 0s, note('c'));
  core.add(1s, 0s, note('a'));
  core.add(1s, 0s, note('b'));
  EXPECT_EQ(runAll(3s), "abc");
}

TEST_F(QueueCoreTest, FiresOnceWithoutAPeriod) {
  core.add(1s, 0s, note('a'));
  EXPECT_EQ(runAll(999ms), "");
  EXPECT_EQ(runAll(1s), "a");
  EXPECT_EQ(runAll(100s), "");
  EXPECT_EQ(core.nextDue(), std::nullopt);
}

TEST_F(QueueCoreTest, MakesUpForMissedFiringsWithOneAndKeepsTheGrid) {
  core.add(2s, 2s, note('a'));
  EXPECT_EQ(runAll(7s), "a") << "2, 4 and 6 in one";
  EXPECT_EQ(core.nextDue(), 8s);
  EXPECT_EQ(runAll(8s), "a");
  EXPECT_EQ(core.nextDue(), 10s);
}

TEST_F(QueueCoreTest, CountsTheGridFromTheMomentAFiringIsTaken) {
  core.add(2s, 2s, note('a'));
  core.post(note('p'));
  ASSERT_TRUE(core.isReady(2s)) << "the firing waits behind the posted task";
  (void)core.take(2s);
  ASSERT_NE(core.take(5s), nullptr);
  EXPECT_EQ(core.nextDue(), 6s);
}

TEST_F(QueueCoreTest, ForgetsACancelledTimerEvenWhenItsFiringWaits) {
  const auto timer = core.add(1s, 1s, note('a'));
  core.post(note('p'));
  ASSERT_TRUE(core.isReady(1s));
  core.cancel(timer);
  EXPECT_EQ(runAll(5s), "p");
  EXPECT_FALSE(core.isReady(100s));
  core.cancel(timer);
}

TEST_F(QueueCoreTest, LetsATimerCancelItself) {
  QueueCore::TimerId timer = 0;
  timer = core.add(1s, 1s, [&] {
    order += 'a';
    core.cancel(timer);
  });
  EXPECT_EQ(runAll(10s), "a");
}

TEST(Ticks, BoundsEveryNumber) {
  const double infinity = std::numeric_limits<double>::infinity();
  for (const double nothing : {0.0, -1.0, -infinity, std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_EQ(toTicks(nothing), 0s);
    EXPECT_EQ(toPeriod(nothing), 0s);
  }
  EXPECT_EQ(toTicks(2.5), 2500ms);
  EXPECT_EQ(toTicks(infinity), toTicks(1e300));
  EXPECT_GT(toTicks(infinity), 24h * 365 * 99);
  EXPECT_EQ(toPeriod(1e-9), 1ms);
  EXPECT_EQ(toPeriod(0.05), 50ms);
}

} // namespace
} // namespace tidewell::test
