#include "control/BusLoop.h"

#include "platform/linux/bus/BusMessages.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>

#include <poll.h>
#include <unistd.h>

namespace tidewell {
namespace {

using std::chrono::microseconds;

/// Rounds up, so that poll does not return early again and again. Negative: no limit.
int pollMilliseconds(std::optional<microseconds> left) {
  if (!left) {
    return -1;
  }
  const auto whole = std::chrono::ceil<std::chrono::milliseconds>(*left).count();
  return static_cast<int>(std::clamp<std::int64_t>(whole, 0, std::numeric_limits<int>::max()));
}

} // namespace

bool BusLoop::connect() {
  sd_bus* bus = nullptr;
  if (sd_bus_open_user(&bus) < 0) {
    return false;
  }
  m_bus.reset(bus);
  sd_bus_set_method_call_timeout(bus, static_cast<std::uint64_t>(replyLimit.count()));
  return runUntil([bus] { return sd_bus_is_ready(bus) > 0; }, replyLimit) == Outcome::reached;
}

BusLoop::Outcome BusLoop::runUntil(const std::function<bool()>& condition, Limit limit) {
  std::optional<Clock::time_point> end;
  if (limit) {
    end = Clock::now() + *limit;
  }
  while (!condition()) {
    const int handled = sd_bus_process(m_bus.get(), nullptr);
    if (handled < 0) {
      return Outcome::busLost;
    }
    // The library returns 0 after a call has timed out, too.
    if (handled > 0 || condition()) {
      continue;
    }
    if (end && Clock::now() >= *end) {
      return Outcome::timedOut;
    }
    if (const Outcome outcome = sleep(end); outcome != Outcome::reached) {
      return outcome;
    }
  }
  return Outcome::reached;
}

/// Waits for a message or a time limit, the bus library's or this one. `reached` unless it failed.
BusLoop::Outcome BusLoop::sleep(std::optional<Clock::time_point> end) {
  std::uint64_t timeout = 0; // of a pending call, on the clock that steady_clock reads
  std::optional<microseconds> left;
  const auto now = Clock::now();
  if (sd_bus_get_timeout(m_bus.get(), &timeout) > 0) {
    const auto at = microseconds(static_cast<std::int64_t>(timeout));
    left = at - std::chrono::floor<microseconds>(now.time_since_epoch());
  }
  if (end) {
    const auto own = std::chrono::ceil<microseconds>(*end - now);
    left = left ? std::min(*left, own) : own;
  }
  const int events = sd_bus_get_events(m_bus.get());
  if (events < 0) {
    return Outcome::busLost;
  }
  std::array<pollfd, 2> files = {{{sd_bus_get_fd(m_bus.get()), static_cast<short>(events), 0},
                                  {m_watchesOutput ? STDOUT_FILENO : -1, 0, 0}}};
  const int ready = ::poll(files.data(), files.size(), pollMilliseconds(left));
  return ready > 0 && files[1].revents != 0 ? Outcome::outputClosed : Outcome::reached;
}

} // namespace tidewell
