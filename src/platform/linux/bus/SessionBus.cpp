#include "platform/linux/bus/SessionBus.h"

#include "platform/linux/loop/EventLoop.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <utility>

#include <poll.h>
#include <sys/epoll.h>

namespace tidewell {
namespace {

constexpr Seconds firstDelay = 1.0;
constexpr Seconds longestDelay = 60.0;
constexpr std::uint64_t noTimeout = UINT64_MAX;

/// Seconds until the library's clock, which counts whole microseconds, has passed a point. Rounded
/// up, because the library would do nothing before and ask for the same point again.
Seconds secondsUntil(std::uint64_t point) {
  const std::chrono::nanoseconds now = std::chrono::steady_clock::now().time_since_epoch();
  const std::chrono::microseconds past(point + 1);
  return std::chrono::duration<double>(past - now).count();
}

} // namespace

std::uint32_t epollEvents(int pollEvents) {
  return (pollEvents & POLLOUT) != 0 ? EPOLLOUT : EPOLLIN;
}

SessionBus::SessionBus(EventLoop& loop) : SessionBus(loop, environmentAddress()) {}

SessionBus::SessionBus(EventLoop& loop, std::string address)
    : m_loop(loop), m_address(std::move(address)), m_delay(firstDelay),
      m_beforeSleep(loop.beforeSleep([this] { updateWatch(); })) {
  connect();
}

SessionBus::~SessionBus() { close(); }

Subscription SessionBus::onConnected(std::function<void(sd_bus& bus)> function) {
  if (m_isUsable) {
    function(*m_bus);
  }
  return m_onConnected.add(std::move(function));
}

Subscription SessionBus::onLost(std::function<void()> function) {
  return m_onLost.add(std::move(function));
}

std::string SessionBus::environmentAddress() {
  if (const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS")) {
    return address;
  }
  const char* directory = std::getenv("XDG_RUNTIME_DIR");
  return directory != nullptr ? std::string("unix:path=") + directory + "/bus" : std::string();
}

std::string SessionBus::systemAddress() {
  const char* address = std::getenv("DBUS_SYSTEM_BUS_ADDRESS");
  return address != nullptr ? address : "unix:path=/run/dbus/system_bus_socket";
}

void SessionBus::connect() {
  m_retry.reset();
  if (m_address.empty() || !start()) {
    close();
    tryLater();
  }
}

bool SessionBus::start() {
  if (sd_bus_new(&m_bus) < 0 || sd_bus_set_address(m_bus, m_address.c_str()) < 0 ||
      sd_bus_set_bus_client(m_bus, 1) < 0 || sd_bus_set_connected_signal(m_bus, 1) < 0 ||
      sd_bus_match_signal_async(m_bus, nullptr, "org.freedesktop.DBus.Local",
                                "/org/freedesktop/DBus/Local", "org.freedesktop.DBus.Local",
                                "Connected", &SessionBus::connected, nullptr, this) < 0 ||
      sd_bus_start(m_bus) < 0) {
    return false;
  }
  m_watched = EPOLLIN;
  m_watch = m_loop.watch(sd_bus_get_fd(m_bus), m_watched, [this](std::uint32_t) { process(); });
  return m_watch != nullptr;
}

int SessionBus::connected(sd_bus_message* /*message*/, void* self, sd_bus_error* /*error*/) {
  auto& session = *static_cast<SessionBus*>(self);
  session.m_delay = firstDelay;
  session.m_isUsable = true;
  session.m_onConnected.notify(*session.m_bus);
  return 0;
}

void SessionBus::process() {
  // Referenced, because a handler may close the connection.
  sd_bus* const bus = sd_bus_ref(m_bus);
  int result = 1;
  for (int count = 0; result > 0 && bus == m_bus && count < messagesPerTurn; ++count) {
    result = sd_bus_process(bus, nullptr);
    if (epollEvents(sd_bus_get_events(bus)) == EPOLLOUT) {
      break;
    }
  }
  if (result < 0 && bus == m_bus) {
    lose();
  }
  sd_bus_unref(bus);
}

void SessionBus::updateWatch() {
  if (m_bus == nullptr) {
    return;
  }
  const int wanted = sd_bus_get_events(m_bus);
  if (wanted < 0) {
    lose();
    return;
  }
  if (const std::uint32_t events = epollEvents(wanted); events != m_watched) {
    m_watched = events;
    m_watch->setEvents(events);
  }
  std::uint64_t timeout = noTimeout;
  if (sd_bus_get_timeout(m_bus, &timeout) < 0 || timeout == noTimeout) {
    m_timeout.reset();
    m_timeoutAt.reset();
  } else if (timeout != m_timeoutAt) {
    m_timeoutAt = timeout;
    m_timeout = m_loop.repeat(secondsUntil(timeout), 0.0, [this] {
      m_timeoutAt.reset();
      process();
    });
  }
}

void SessionBus::lose() {
  close();
  tryLater();
}

void SessionBus::close() {
  m_watch.reset();
  m_timeout.reset();
  m_timeoutAt.reset();
  if (std::exchange(m_isUsable, false)) {
    m_onLost.notify();
  }
  sd_bus_close_unref(std::exchange(m_bus, nullptr));
}

void SessionBus::tryLater() {
  m_retry = m_loop.repeat(m_delay, 0.0, [this] { connect(); });
  m_delay = std::min(2.0 * m_delay, longestDelay);
}

} // namespace tidewell
