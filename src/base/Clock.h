#pragma once

namespace tidewell {

/// The wall clock.
class Clock {
public:
  Clock() = default;
  Clock(const Clock&) = delete;
  Clock& operator=(const Clock&) = delete;
  virtual ~Clock() = default;

  /// Seconds since 1970-01-01 UTC. May jump in either direction.
  [[nodiscard]] virtual double now() const = 0;
};

} // namespace tidewell
