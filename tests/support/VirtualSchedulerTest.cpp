#include "support/VirtualScheduler.h"

#include <gtest/gtest.h>

#include <functional>
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

/// A task that waits for a time, then calls a function.
Async<> after(VirtualScheduler& scheduler, Seconds span, std::function<void()> then) {
  co_await scheduler.sleep(span);
  then();
}

TEST(VirtualScheduler, LetsOthersRunWhileATaskWaits) {
  VirtualScheduler scheduler;
  const auto slow = scheduler.makeSerialQueue("slow");
  const auto other = scheduler.makeSerialQueue("other");
  std::vector<std::pair<std::string, Ticks>> events;
  const auto note = [&](const char* what) {
    return [&events, &scheduler, what] { events.emplace_back(what, scheduler.now()); };
  };
  slow->post([&] { return after(scheduler, 2.0, note("slow done")); });
  slow->post(note("slow next"));
  other->postAfter(0.5, [&] { return after(scheduler, 5.0, note("other done")); });
  scheduler.main().postAfter(1.0, note("main"));
  scheduler.advance(1.5);
  EXPECT_EQ(events.size(), 1U);
  scheduler.advance(8.5);
  const std::vector<std::pair<std::string, Ticks>> expected{
      {"main", 1s}, {"slow done", 2s}, {"slow next", 2s}, {"other done", 5500ms}};
  EXPECT_EQ(events, expected);
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
    scheduler.background().post([&] { return after(scheduler, 1.0, [&] { ++done; }); });
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

} // namespace
} // namespace tidewell::test
