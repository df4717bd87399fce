#include "base/Published.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tidewell::test {
namespace {

TEST(Published, TellsANewObserverTheCurrentValueAtOnce) {
  Published<int> value(7);
  std::vector<int> heard;
  const auto subscription = value.subscribe([&](int now) { heard.push_back(now); });
  EXPECT_EQ(heard, std::vector<int>{7});
}

TEST(Published, NotifiesEveryWriteEqualOrNot) {
  Published<int> value(1);
  std::vector<int> heard;
  const auto subscription = value.subscribe([&](int now) { heard.push_back(now); });
  value.set(1);
  value.set(2);
  value.set(2);
  EXPECT_EQ(heard, (std::vector<int>{1, 1, 2, 2}));
}

TEST(Published, NotifiesOnceForAChangeInPlace) {
  Published<std::vector<int>> value;
  std::vector<std::size_t> sizes;
  const auto subscription =
      value.subscribe([&](const auto& list) { sizes.push_back(list.size()); });
  value.mutate([](auto& list) {
    list.push_back(1);
    list.push_back(2);
  });
  EXPECT_EQ(sizes, (std::vector<std::size_t>{0, 2}));
}

TEST(Published, StopsWithItsSubscription) {
  Published<int> value;
  int heard = 0;
  {
    const auto subscription = value.subscribe([&](int) { ++heard; });
    value.set(1);
  }
  value.set(2);
  EXPECT_EQ(heard, 2);
}

TEST(Published, NotifiesInTheOrderOfSubscription) {
  Published<int> value;
  std::string order;
  const auto first = value.subscribe([&](int) { order += 'a'; });
  const auto second = value.subscribe([&](int) { order += 'b'; });
  order.clear();
  value.set(1);
  EXPECT_EQ(order, "ab");
}

TEST(Published, LetsAnObserverEndItself) {
  Published<int> value;
  int heard = 0;
  std::optional<Subscription> self;
  const auto big = std::make_shared<std::string>("kept alive while it runs");
  self = value.subscribe([&, big](int) {
    ++heard;
    self.reset();
    EXPECT_EQ(*big, "kept alive while it runs");
  });
  self = value.subscribe([&, big](int now) {
    ++heard;
    if (now == 1) {
      self.reset();
      EXPECT_EQ(*big, "kept alive while it runs");
    }
  });
  heard = 0;
  value.set(1);
  value.set(2);
  EXPECT_EQ(heard, 1);
}

TEST(Published, DoesNotCallAnObserverThatAnotherHasJustEnded) {
  Published<int> value;
  int heard = 0;
  Subscription second;
  const auto first = value.subscribe([&](int) { second.end(); });
  second = value.subscribe([&](int) { ++heard; });
  heard = 0;
  value.set(1);
  EXPECT_EQ(heard, 0);
}

TEST(Published, LetsAnObserverSubscribeAnother) {
  Published<int> value;
  std::vector<int> heard;
  Subscription inner;
  const auto outer = value.subscribe([&](int now) {
    if (now == 1) {
      inner = value.subscribe([&](int seen) { heard.push_back(seen); });
    }
  });
  value.set(1);
  EXPECT_EQ(heard, std::vector<int>{1}) << "once, by its subscription";
  value.set(2);
  EXPECT_EQ(heard, (std::vector<int>{1, 2}));
}

TEST(Published, LetsAnObserverWriteAgainAndNeverGoesBackInTime) {
  Published<int> value;
  std::vector<int> late;
  const auto writer = value.subscribe([&](int now) {
    if (now == 1) {
      value.set(2);
    }
  });
  const auto reader = value.subscribe([&](int now) { late.push_back(now); });
  late.clear();
  value.set(1);
  EXPECT_EQ(late, (std::vector<int>{2, 2}));
  EXPECT_EQ(value.get(), 2);
}

TEST(Published, MayBeDestroyedByItsObserver) {
  auto value = std::make_unique<Published<std::string>>("before");
  bool laterHeard = false;
  const auto destroyer = value->subscribe([&](const std::string& now) {
    if (now == "end") {
      value.reset();
    }
  });
  const auto later = value->subscribe([&](const std::string& now) { laterHeard = now == "end"; });
  value->set("end");
  EXPECT_EQ(value, nullptr);
  EXPECT_TRUE(laterHeard) << "the round goes on with the value as it was";
}

TEST(Published, MayGoBeforeItsSubscriptions) {
  Subscription subscription;
  {
    Published<int> value;
    subscription = value.subscribe([](int) {});
  }
  subscription.end();
}

TEST(Subscription, MovesItsRegistration) {
  Published<int> value;
  int heard = 0;
  auto first = value.subscribe([&](int) { ++heard; });
  Subscription second = std::move(first);
  heard = 0;
  value.set(1);
  EXPECT_EQ(heard, 1);
  second = Subscription();
  value.set(2);
  EXPECT_EQ(heard, 1);
}

} // namespace
} // namespace tidewell::test
