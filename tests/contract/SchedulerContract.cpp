#include "contract/SchedulerContract.h"

#include <algorithm>
#include <vector>

namespace tidewell::test {
namespace {

// A unit of real time in these tests, long compared to a busy machine's delays.
constexpr Seconds tick = 0.05;

/// A task that waits for a time, then calls a function.
Async<> after(SchedulerUnderTest& world, Seconds span, std::function<void()> then) {
  co_await world.sleep(span);
  then();
}

TEST_P(SchedulerContract, RunsASerialQueueInTheOrderOfPostingOneAtATime) {
  const auto queue = scheduler.makeSerialQueue("com.halden.tidewell.test");
  std::vector<int> order;
  int inside = 0;
  for (int index = 0; index < 50; ++index) {
    queue->post([&, index] {
      EXPECT_EQ(inside++, 0);
      order.push_back(index);
      --inside;
    });
  }
  std::vector<int> seen;
  queue->post([&] { scheduler.main().post([&, copy = order] { seen = copy; }); });
  world->run(2 * tick);
  ASSERT_EQ(seen.size(), 50U);
  EXPECT_TRUE(std::ranges::is_sorted(seen));
}

TEST_P(SchedulerContract, NeverRunsAPostedTaskInsidePost) {
  const auto queue = scheduler.makeSerialQueue("com.halden.tidewell.test");
  std::vector<int> order;
  scheduler.main().post([&] {
    scheduler.main().post([&] { order.push_back(2); });
    order.push_back(1);
  });
  bool inPost = false;
  bool nested = false;
  queue->post([&] {
    inPost = true;
    queue->post([&] { nested = nested || inPost; });
    inPost = false;
  });
  world->run(tick);
  EXPECT_EQ(order, (std::vector<int>{1, 2}));
  EXPECT_FALSE(nested);
}

TEST_P(SchedulerContract, DeliversAQueuesResultsOnMainInTheirOrder) {
  const auto queue = scheduler.makeSerialQueue("com.halden.tidewell.test");
  std::vector<int> results;
  for (int index = 0; index < 100; ++index) {
    queue->post([&, index] { scheduler.main().post([&, index] { results.push_back(index); }); });
  }
  world->run(3 * tick);
  ASSERT_EQ(results.size(), 100U);
  EXPECT_TRUE(std::ranges::is_sorted(results));
}

TEST_P(SchedulerContract, RunsDelayedTasksNotEarlyAndInTheOrderOfTheirTimes) {
  std::vector<int> order;
  scheduler.main().postAfter(4 * tick, [&] { order.push_back(4); });
  scheduler.main().postAfter(2 * tick, [&] { order.push_back(2); });
  scheduler.main().postAfter(-1.0, [&] { order.push_back(0); });
  world->run(3 * tick);
  EXPECT_EQ(order, (std::vector<int>{0, 2}));
  world->run(3 * tick);
  EXPECT_EQ(order, (std::vector<int>{0, 2, 4}));
}

TEST_P(SchedulerContract, RepeatsUntilTheTimerIsDestroyed) {
  const auto queue = scheduler.makeSerialQueue("com.halden.tidewell.test");
  for (WorkQueue* target : {&scheduler.main(), queue.get()}) {
    int fired = 0;
    auto timer = target->repeat(tick, 2 * tick, [&] { ++fired; });
    world->run(6 * tick);
    EXPECT_EQ(fired, 3);
    timer.reset();
    world->run(4 * tick);
    EXPECT_EQ(fired, 3);
  }
}

TEST_P(SchedulerContract, CoalescesMissedFiringsAndKeepsTheGrid) {
  const auto queue = scheduler.makeSerialQueue("com.halden.tidewell.test");
  int fired = 0;
  // Due at 2, 4, 6, ...; blocked from 2 to 7, so 4 and 6 become one, then 8 and 10.
  const auto timer = queue->repeat(
      2 * tick, 2 * tick, [&] { return fired++ == 0 ? world->sleep(5 * tick) : Async<>(); });
  world->run(11 * tick);
  EXPECT_EQ(fired, 4);
}

TEST_P(SchedulerContract, FiresATimerWithoutAPeriodOnce) {
  int fired = 0;
  const auto timer = scheduler.main().repeat(tick, 0.0, [&] { ++fired; });
  world->run(4 * tick);
  EXPECT_EQ(fired, 1);
}

TEST_P(SchedulerContract, LetsATimerEndItselfFromItsOwnFiring) {
  int fired = 0;
  std::unique_ptr<Timer> timer;
  timer = scheduler.main().repeat(tick / 5, tick / 5, [&] {
    ++fired;
    timer.reset();
  });
  world->run(2 * tick);
  EXPECT_EQ(fired, 1);
}

TEST_P(SchedulerContract, GoesOnWithMainAndOtherQueuesWhileOneWaits) {
  const auto slow = scheduler.makeSerialQueue("com.halden.tidewell.slow");
  const auto quick = scheduler.makeSerialQueue("com.halden.tidewell.quick");
  bool slowDone = false;
  bool quickDone = false;
  bool mainDone = false;
  slow->post([&] { return after(*world, 6 * tick, [&] { slowDone = true; }); });
  quick->postAfter(tick, [&] { quickDone = true; });
  scheduler.main().postAfter(tick, [&] { mainDone = true; });
  world->run(3 * tick);
  EXPECT_TRUE(quickDone && mainDone);
  EXPECT_FALSE(slowDone);
  world->run(6 * tick);
  EXPECT_TRUE(slowDone);
}

TEST_P(SchedulerContract, RunsBackgroundWorkConcurrentlyAndItsTimersOnTime) {
  int done = 0;
  bool watchdog = false;
  for (int count = 0; count < 3; ++count) {
    scheduler.background().post([&] { return after(*world, 4 * tick, [&] { ++done; }); });
  }
  scheduler.background().postAfter(tick, [&] { watchdog = true; });
  world->run(3 * tick);
  EXPECT_TRUE(watchdog);
  EXPECT_EQ(done, 0);
  world->run(3 * tick);
  EXPECT_EQ(done, 3);
}

TEST_P(SchedulerContract, EndsWhatWaitsInAQueueThatIsDestroyed) {
  auto queue = scheduler.makeSerialQueue("com.halden.tidewell.test");
  bool finished = false;
  bool second = false;
  const auto witness = std::make_shared<int>();
  queue->post([&, witness] { return after(*world, 4 * tick, [&, witness] { finished = true; }); });
  queue->post([&, witness] { second = true; });
  queue->postAfter(3 * tick, [&, witness] { second = true; });
  world->run(2 * tick);
  EXPECT_GT(witness.use_count(), 3);
  queue.reset();
  EXPECT_EQ(witness.use_count(), 1) << "nothing keeps what its tasks held";
  world->run(6 * tick);
  EXPECT_FALSE(finished);
  EXPECT_FALSE(second);
}

TEST_P(SchedulerContract, LetsATaskDestroyItsQueue) {
  auto queue = scheduler.makeSerialQueue("com.halden.tidewell.test");
  bool second = false;
  queue->post([&] { queue.reset(); });
  queue->post([&] { second = true; });
  world->run(tick);
  EXPECT_EQ(queue, nullptr);
  EXPECT_FALSE(second);
}

TEST_P(SchedulerContract, CarriesAWaitingTasksResultToMain) {
  const auto queue = scheduler.makeSerialQueue("com.halden.tidewell.test");
  bool delivered = false;
  queue->post([&] {
    return after(*world, tick, [&] { scheduler.main().post([&] { delivered = true; }); });
  });
  queue->post([&] { return world->sleep(tick); });
  world->run(5 * tick);
  EXPECT_TRUE(delivered);
}

} // namespace
} // namespace tidewell::test
