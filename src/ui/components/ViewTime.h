#pragma once

#include <functional>

namespace tidewell {

/// Time as the views see it: handed in, so that a test moves it by hand. Main thread.
struct ViewTime {
  /// Seconds that never go back.
  std::function<double()> now;
  /// Calls back once, so many seconds later.
  std::function<void(double seconds, std::function<void()> task)> after;

  /// The machine's time. Delays need the application's event loop.
  [[nodiscard]] static ViewTime real();
};

} // namespace tidewell
