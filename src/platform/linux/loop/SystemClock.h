#pragma once

#include "base/Clock.h"

#include <chrono>

namespace tidewell {

/// The machine's wall clock.
class SystemClock final : public Clock {
public:
  [[nodiscard]] double now() const override {
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration<double>(sinceEpoch).count();
  }
};

} // namespace tidewell
