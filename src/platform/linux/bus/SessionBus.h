#pragma once

#include "base/Observers.h"
#include "base/Scheduler.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <systemd/sd-bus.h>

namespace tidewell {

class EventLoop;
class FdWatch;

/// The connection to the user's session bus, or to the system's bus, made again whenever it breaks.
///
/// Never blocks: connecting and every call are asynchronous. Without a bus it tries again after one
/// second, then two, four and so on up to a minute. Handles a few messages per turn of the loop,
/// and none while output waits, so that a client that floods the bus delays nothing else and its
/// replies do not accumulate here.
class SessionBus {
public:
  /// Handles at most so many messages in one turn of the loop.
  static constexpr int messagesPerTurn = 16;

  /// Begins to connect. Borrows the loop. The address is that of the environment if none is given;
  /// an empty one means that there is no bus.
  explicit SessionBus(EventLoop& loop);
  SessionBus(EventLoop& loop, std::string address);
  SessionBus(SessionBus&&) = delete;
  ~SessionBus();

  /// Calls the function with each connection as soon as it is usable; at once if there is one.
  [[nodiscard]] Subscription onConnected(std::function<void(sd_bus& bus)> function);

  /// Calls the function when a connection is lost. Owners of its slots must release them then.
  [[nodiscard]] Subscription onLost(std::function<void()> function);

  /// The usable connection; null if there is none.
  [[nodiscard]] sd_bus* connection() const { return m_isUsable ? m_bus : nullptr; }

  /// The address in the environment; empty if there is none.
  [[nodiscard]] static std::string environmentAddress();

  /// The system bus's address: that of the environment, else the usual one.
  [[nodiscard]] static std::string systemAddress();

private:
  static int connected(sd_bus_message* message, void* self, sd_bus_error* error);

  void connect();
  [[nodiscard]] bool start();
  void process();
  void updateWatch();
  void lose();
  void close();
  void tryLater();

  EventLoop& m_loop;
  std::string m_address;
  sd_bus* m_bus = nullptr;
  bool m_isUsable = false;
  Seconds m_delay;
  std::unique_ptr<FdWatch> m_watch;
  std::uint32_t m_watched = 0;
  std::unique_ptr<Timer> m_timeout;         // of a pending call
  std::optional<std::uint64_t> m_timeoutAt; // microseconds on the monotonic clock
  std::unique_ptr<Timer> m_retry;
  Observers<sd_bus&> m_onConnected;
  Observers<> m_onLost;
  Subscription m_beforeSleep;
};

/// The events of epoll(7) to wait for, given what sd_bus_get_events returns: room for output as
/// long as any waits, otherwise input. Reading on would add replies to those that wait.
[[nodiscard]] std::uint32_t epollEvents(int pollEvents);

} // namespace tidewell
