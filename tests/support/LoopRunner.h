#pragma once

#include "platform/linux/loop/EventLoop.h"

#include <functional>
#include <memory>

namespace tidewell::test {

/// Serves the loop until the condition holds. False when it does not come to hold in ten seconds.
inline bool runUntil(EventLoop& loop, const std::function<bool()>& condition) {
  bool isReached = false;
  const Subscription check = loop.beforeSleep([&] {
    if (!isReached && condition()) {
      isReached = true;
      loop.quit();
    }
  });
  const std::unique_ptr<Timer> limit = loop.repeat(10.0, 0.0, [&] { loop.quit(); });
  loop.run();
  return isReached;
}

} // namespace tidewell::test
