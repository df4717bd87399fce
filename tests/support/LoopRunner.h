#pragma once

#include "platform/linux/loop/EpollLoop.h"
#include "support/Awaiting.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace tidewell::test {

/// Runs the loop until the condition holds. False if it does not within 20 s.
inline bool runUntil(EpollLoop& loop, const std::function<bool()>& condition) {
  bool isReached = false;
  const Subscription check = loop.beforeSleep([&] {
    if (!isReached && condition()) {
      isReached = true;
      loop.quit();
    }
  });
  const std::unique_ptr<Timer> limit = loop.repeat(20.0, 0.0, [&] { loop.quit(); });
  loop.run();
  return isReached;
}

/// Runs the loop until the work is done and returns its result.
template <class T> T awaited(EpollLoop& loop, Async<T> work) {
  std::optional<T> result;
  Async<> storing = store(std::move(work), &result);
  storing.start([] {});
  EXPECT_TRUE(storing.isDone() || runUntil(loop, [&] { return storing.isDone(); }));
  return std::move(result).value_or(T());
}

} // namespace tidewell::test
