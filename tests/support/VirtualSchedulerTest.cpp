#include "support/VirtualScheduler.h"

#include "base/Service.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace tidewell::test {
namespace {

using namespace std::chrono_literals;

TEST(VirtualScheduler, RunsNothingUntilTimePasses) {
  VirtualScheduler scheduler;
  int ran = 0;
  scheduler.main().post([&] { ++ran; });
  EXPECT_EQ(ran, 0);
  scheduler.settle();
  EXPECT_EQ(ran, 1);
}

TEST(VirtualScheduler, FiresTimersAtTheirVirtualTimes) {
  VirtualScheduler scheduler;
  std::vector<Ticks> times;
  const auto timer = scheduler.main().repeat(1.0, 2.0, [&] { times.push_back(scheduler.now()); });
  scheduler.main().postAfter(4.0, [&] { times.push_back(scheduler.now()); });
  scheduler.advance(5.0);
  EXPECT_EQ(times, (std::vector<Ticks>{1s, 3s, 4s, 5s}));
  EXPECT_EQ(scheduler.now(), 5s);
}

TEST(VirtualScheduler, PassesAnHourInNoTime) {
  VirtualScheduler scheduler;
  int fired = 0;
  const auto timer = scheduler.main().repeat(0.1, 0.1, [&] { ++fired; });
  scheduler.advance(3600.0);
  EXPECT_EQ(fired, 36'000);
}

TEST(VirtualScheduler, LetsOthersRunWhileATaskBlocks) {
  VirtualScheduler scheduler;
  const auto slow = scheduler.makeSerialQueue("slow");
  const auto other = scheduler.makeSerialQueue("other");
  std::vector<std::pair<std::string, Ticks>> events;
  const auto note = [&](const char* what) { events.emplace_back(what, scheduler.now()); };
  slow->post([&] {
    scheduler.block(2.0);
    note("slow done");
  });
  slow->post([&] { note("slow next"); });
  other->postAfter(0.5, [&] {
    scheduler.block(5.0);
    note("other done");
  });
  scheduler.main().postAfter(1.0, [&] { note("main"); });
  scheduler.advance(10.0);
  const std::vector<std::pair<std::string, Ticks>> expected{
      {"main", 1s}, {"slow done", 2s}, {"slow next", 2s}, {"other done", 5500ms}};
  EXPECT_EQ(events, expected);
}

TEST(VirtualScheduler, LetsBlockedTasksSpanSeveralAdvances) {
  VirtualScheduler scheduler;
  const auto queue = scheduler.makeSerialQueue("queue");
  bool done = false;
  queue->post([&] {
    scheduler.block(3.0);
    done = true;
  });
  scheduler.advance(1.0);
  EXPECT_FALSE(done);
  scheduler.advance(2.0);
  EXPECT_TRUE(done);
}

TEST(VirtualScheduler, EndsBlockedTasksWithItself) {
  bool done = false;
  {
    VirtualScheduler scheduler;
    const auto queue = scheduler.makeSerialQueue("queue");
    queue->post([&] {
      scheduler.block(1000.0);
      done = true;
    });
    scheduler.advance(1.0);
  }
  EXPECT_TRUE(done);
}

TEST(VirtualScheduler, KnowsWhoseTaskRuns) {
  VirtualScheduler scheduler;
  const auto queue = scheduler.makeSerialQueue("queue");
  EXPECT_TRUE(scheduler.main().isCurrent()) << "the test itself";
  queue->post([&] {
    EXPECT_TRUE(queue->isCurrent());
    EXPECT_FALSE(scheduler.main().isCurrent());
    scheduler.block(1.0);
    EXPECT_TRUE(queue->isCurrent());
  });
  scheduler.main().postAfter(0.5, [&] { EXPECT_FALSE(queue->isCurrent()); });
  scheduler.advance(2.0);
}

TEST(VirtualScheduler, DropsWhatWaitsInADestroyedQueue) {
  VirtualScheduler scheduler;
  auto queue = scheduler.makeSerialQueue("queue");
  bool ran = false;
  queue->post([&] { ran = true; });
  queue.reset();
  scheduler.advance(1.0);
  EXPECT_FALSE(ran);
}

TEST(VirtualScheduler, RunsBackgroundTasksBesideEachOther) {
  VirtualScheduler scheduler;
  int done = 0;
  for (int count = 0; count < 3; ++count) {
    scheduler.background().post([&] {
      scheduler.block(1.0);
      ++done;
    });
  }
  scheduler.advance(1.0);
  EXPECT_EQ(done, 3);
}

std::string interleaving(std::uint64_t seed) {
  VirtualScheduler scheduler(seed);
  const auto first = scheduler.makeSerialQueue("first");
  const auto second = scheduler.makeSerialQueue("second");
  std::string order;
  for (int count = 0; count < 4; ++count) {
    first->post([&] { order += 'a'; });
    second->post([&] { order += 'b'; });
    scheduler.main().post([&] { order += 'm'; });
  }
  scheduler.settle();
  return order;
}

TEST(VirtualScheduler, RepeatsItselfForASeedAndVariesBetweenSeeds) {
  std::set<std::string> orders;
  for (std::uint64_t seed = 0; seed < 32; ++seed) {
    EXPECT_EQ(interleaving(seed), interleaving(seed));
    orders.insert(interleaving(seed));
  }
  EXPECT_GT(orders.size(), 16U);
}

TEST(VirtualClock, JumpsApartFromTicks) {
  VirtualScheduler scheduler;
  VirtualClock clock(scheduler, 1000.0);
  clock.jump(-500.0);
  scheduler.advance(2.0);
  EXPECT_EQ(clock.now(), 502.0);
  EXPECT_EQ(scheduler.now(), 2s);
}

struct Mortal {
  explicit Mortal(std::function<void()> onDeath) : m_onDeath(std::move(onDeath)) {}
  Mortal(const Mortal&) = delete;
  Mortal& operator=(const Mortal&) = delete;
  ~Mortal() { m_onDeath(); }

private:
  std::function<void()> m_onDeath;
};

TEST(Service, DiesOnTheMainQueueWhereverItsLastOwnerLetsGo) {
  VirtualScheduler scheduler;
  const auto queue = scheduler.makeSerialQueue("queue");
  int deaths = 0;
  auto service = makeService<Mortal>(scheduler.main(), [&] {
    EXPECT_TRUE(scheduler.main().isCurrent());
    ++deaths;
  });
  queue->post([held = service]() mutable { held.reset(); });
  queue->post([owner = std::move(service), &deaths]() mutable {
    owner.reset();
    EXPECT_EQ(deaths, 0);
  });
  scheduler.settle();
  EXPECT_EQ(deaths, 1);
}

} // namespace
} // namespace tidewell::test
