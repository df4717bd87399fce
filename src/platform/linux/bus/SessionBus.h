#pragma once

#include "base/Observers.h"
#include "base/Scheduler.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include <systemd/sd-bus.h>

namespace tidewell {

class EventLoop;
class FdWatch;

/// The connection to the user's session bus, made again whenever it breaks.
///
/// Never blocks: connecting and every call are asynchronous. Without a bus it tries again after a
/// second, then two, four and so on up to a minute. Main thread.
class SessionBus {
public:
  /// Begins to connect. Borrows the loop. The address is that of the environment, where an empty
  /// one means that there is no bus.
  explicit SessionBus(EventLoop& loop);
  SessionBus(EventLoop& loop, std::string address);
  SessionBus(const SessionBus&) = delete;
  SessionBus& operator=(const SessionBus&) = delete;
  ~SessionBus();

  /// Calls the function with each connection as soon as it is usable; at once when there is one.
  [[nodiscard]] Subscription onConnected(std::function<void(sd_bus& bus)> function);

  /// Calls the function when a connection is gone; whoever holds slots of it lets go of them then.
  [[nodiscard]] Subscription onLost(std::function<void()> function);

  /// The usable connection; null while there is none.
  [[nodiscard]] sd_bus* connection() const { return m_isUsable ? m_bus : nullptr; }

  /// Address of the session bus by the environment; empty when it names none.
  [[nodiscard]] static std::string environmentAddress();

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
  std::unique_ptr<Timer> m_timeout; // of a pending call
  std::uint64_t m_timeoutAt = 0;    // microseconds on the monotonic clock; 0 without one
  std::unique_ptr<Timer> m_retry;
  Observers<sd_bus&> m_onConnected;
  Observers<> m_onLost;
  Subscription m_beforeSleep;
};

/// The events of epoll(7) for those of poll(2) that sd-bus asks for.
[[nodiscard]] std::uint32_t epollEvents(int pollEvents);

} // namespace tidewell
