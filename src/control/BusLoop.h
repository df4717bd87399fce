#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

#include <systemd/sd-bus.h>

namespace tidewell {

/// A connection to the session bus and the loop that waits for its messages.
class BusLoop {
public:
  using Limit = std::optional<std::chrono::microseconds>;
  enum class Outcome { reached, timedOut, busLost, outputClosed };

  /// How long a program on the bus may take for a reply.
  static constexpr std::chrono::microseconds replyLimit = std::chrono::seconds(2);

  /// Connects. False if there is no session bus, or if it does not answer within the limit.
  [[nodiscard]] bool connect();

  /// Only after `connect`.
  [[nodiscard]] sd_bus& bus() const { return *m_bus; }

  /// From now on, `runUntil` also ends when nobody reads standard output any more.
  void watchOutput() { m_watchesOutput = true; }

  /// Handles messages until the condition holds, the limit is over or the bus is lost. Sleeps while
  /// there is nothing to do.
  [[nodiscard]] Outcome runUntil(const std::function<bool()>& condition, Limit limit);

private:
  struct BusEnd {
    void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
  };
  using Clock = std::chrono::steady_clock;

  [[nodiscard]] Outcome sleep(std::optional<Clock::time_point> end);

  std::unique_ptr<sd_bus, BusEnd> m_bus;
  bool m_watchesOutput = false;
};

} // namespace tidewell
