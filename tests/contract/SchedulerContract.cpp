#include "contract/SchedulerContract.h"

#include "base/Service.h"

#include <algorithm>
#include <atomic>
#include <vector>

namespace tidewell::test {
namespace {

// One unit of real time in these tests: long against a busy machine's delays.
constexpr Seconds tick = 0.05;

TEST_P(SchedulerContract, RunsASerialQueueInTheOrderOfPostingOneAtATime) {
  const auto queue = scheduler.makeSerialQueue("com.halden.tidewell.test");
  std::vector<int> order;
  std::atomic<int> inside = 0;
  for (int index = 0; index < 50; ++index) {
    queue->post([&, index] {
      EXPECT_EQ(inside.fetch_add(1), 0);
      order.push_back(index);
      inside.fetch_sub(1);
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
  std::atomic<bool> inPost = false;
  std::atomic<bool> nested = false;
  queue->post([&] {
    inPost = true;
    queue->post([&] { nested = nested || inPost; });
    inPost = false;
  });
  world->run(tick);
  EXPECT_EQ(order, (std::vector<int>{1, 2}));
  EXPECT_FALSE(nested);
}

TEST_P(SchedulerContract, DeliversAWorkersResultsOnMainInTheirOrder) {
  const auto queue = scheduler.makeSerialQueue("com.halden.tidewell.test");
  std::vector<int> results;
  for (int index = 0; index < 100; ++index) {
    queue->post([&, index] {
      scheduler.main().post([&, index] {
        EXPECT_TRUE(scheduler.main().isCurrent());
        results.push_back(index);
      });
    });
  }
  world->run(3 * tick);
  ASSERT_EQ(results.size(), 100U);
  EXPECT_TRUE(std::ranges::is_sorted(results));
}

TEST_P(SchedulerContract, KnowsItsQueues) {
  const auto queue = scheduler.makeSerialQueue("com.halden.tidewell.test");
  const auto other = scheduler.makeSerialQueue("com.halden.tidewell.other");
  std::atomic<int> right = 0;
  queue->post([&] {
    right += queue->isCurrent() ? 1 : 0;
    right += other->isCurrent() || scheduler.main().isCurrent() ? 0 : 1;
  });
  scheduler.main().post(
      [&] { right += scheduler.main().isCurrent() && !queue->isCurrent() ? 1 : 0; });
  world->run(tick);
  EXPECT_EQ(right, 3);
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
    std::atomic<int> fired = 0;
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
  std::atomic<int> fired = 0;
  // Due at 2, 4, 6, ... and held up from 2 to 7: 4 and 6 become one, then 8, 10.
  const auto timer = queue->repeat(2 * tick, 2 * tick, [&] {
    if (fired++ == 0) {
      world->block(5 * tick);
    }
  });
  world->run(11 * tick);
  EXPECT_EQ(fired, 4);
}

TEST_P(SchedulerContract, FiresATimerWithoutAPeriodOnce) {
  std::atomic<int> fired = 0;
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

TEST_P(SchedulerContract, GoesOnWithMainAndOtherQueuesWhileOneBlocks) {
  const auto slow = scheduler.makeSerialQueue("com.halden.tidewell.slow");
  const auto quick = scheduler.makeSerialQueue("com.halden.tidewell.quick");
  std::atomic<bool> slowDone = false;
  std::atomic<bool> quickDone = false;
  bool mainDone = false;
  slow->post([&] {
    world->block(6 * tick);
    slowDone = true;
  });
  quick->postAfter(tick, [&] { quickDone = true; });
  scheduler.main().postAfter(tick, [&] { mainDone = true; });
  world->run(3 * tick);
  EXPECT_TRUE(quickDone && mainDone);
  EXPECT_FALSE(slowDone);
  world->run(6 * tick);
  EXPECT_TRUE(slowDone);
}

TEST_P(SchedulerContract, RunsBackgroundWorkConcurrentlyAndItsTimersOnTime) {
  std::atomic<int> blocked = 0;
  std::atomic<bool> watchdog = false;
  for (int count = 0; count < 3; ++count) {
    scheduler.background().post([&] {
      world->block(4 * tick);
      ++blocked;
    });
  }
  scheduler.background().postAfter(tick, [&] { watchdog = true; });
  world->run(3 * tick);
  EXPECT_TRUE(watchdog);
  EXPECT_EQ(blocked, 0);
  world->run(3 * tick);
  EXPECT_EQ(blocked, 3);
}

TEST_P(SchedulerContract, DropsWhatWaitsInAQueueThatIsDestroyedWhileItWorks) {
  auto queue = scheduler.makeSerialQueue("com.halden.tidewell.test");
  std::atomic<bool> finished = false;
  std::atomic<bool> second = false;
  queue->post([&] {
    world->block(4 * tick);
    finished = true;
  });
  queue->post([&] { second = true; });
  world->run(2 * tick);
  queue.reset();
  world->run(6 * tick);
  EXPECT_TRUE(finished);
  EXPECT_FALSE(second);
}

TEST_P(SchedulerContract, CarriesABlockingWorkersLateResultToMain) {
  const auto queue = scheduler.makeSerialQueue("com.halden.tidewell.test");
  bool delivered = false;
  queue->post([&] {
    world->block(tick);
    scheduler.main().post([&] { delivered = true; });
    world->block(tick);
  });
  world->run(5 * tick);
  EXPECT_TRUE(delivered);
}

struct Counted {
  explicit Counted(std::function<void()> onDeath) : m_onDeath(std::move(onDeath)) {}
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;
  ~Counted() { m_onDeath(); }

private:
  std::function<void()> m_onDeath;
};

TEST_P(SchedulerContract, DestroysServicesOnMain) {
  const auto queue = scheduler.makeSerialQueue("com.halden.tidewell.test");
  std::atomic<int> deathsOnMain = 0;
  for (int count = 0; count < 20; ++count) {
    auto service = makeService<Counted>(
        scheduler.main(), [&] { deathsOnMain += scheduler.main().isCurrent() ? 1 : 0; });
    queue->post([held = std::move(service)]() mutable { held.reset(); });
  }
  world->run(2 * tick);
  EXPECT_EQ(deathsOnMain, 20);
}

} // namespace
} // namespace tidewell::test
