#pragma once

#include "base/Interface.h"

namespace tidewell {

/// The wall clock.
class Clock : public Interface {
public:
  /// Seconds since 1970-01-01 UTC. May jump in either direction.
  [[nodiscard]] virtual double now() const = 0;
};

} // namespace tidewell
