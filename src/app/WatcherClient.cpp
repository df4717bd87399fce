#include "app/WatcherClient.h"

#include "platform/linux/bus/SessionBus.h"
#include "platform/linux/process/ProcessName.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace tidewell {
namespace {

constexpr BusService watcher{"org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher"};

// A refused registration is repeated after this time, then after twice as long each time.
constexpr Seconds firstDelay = 2.0;
constexpr Seconds longestDelay = 60.0;

} // namespace

WatcherClient::WatcherClient(WorkQueue& main, SessionBus& bus, Events events)
    : m_main(main), m_events(std::move(events)), m_delay(firstDelay),
      m_lost(bus.onLost([this] { disappear(); })),
      m_connected(bus.onConnected([this](sd_bus& connection) { appear(connection); })) {}

void WatcherClient::appear(sd_bus& bus) {
  m_bus = &bus;
  m_match = watchOwner(bus, watcher.name, [this](sd_bus_message* signal) {
    const char* owner = nullptr;
    if (sd_bus_message_read(signal, "sss", nullptr, nullptr, &owner) > 0) {
      ownerChanged(owner);
    }
  });
  const auto found = [this](sd_bus_message* reply) {
    const char* owner = nullptr;
    const bool isOwned = reply != nullptr && sd_bus_message_read(reply, "s", &owner) > 0;
    ownerChanged(isOwned ? owner : "");
  };
  m_call = callMethod(bus, busDaemon, "GetNameOwner", found, "s", watcher.name);
}

void WatcherClient::disappear() {
  m_retry.reset();
  m_call.reset();
  m_match.reset();
  m_bus = nullptr;
  m_events.taken(false);
}

void WatcherClient::ownerChanged(const std::string& owner) {
  m_retry.reset();
  m_call.reset();
  m_delay = firstDelay;
  // Also if another watcher takes over, because it may refuse the item.
  m_events.taken(false);
  if (owner.empty() || m_bus == nullptr) {
    return;
  }
  const auto identified = [this](sd_bus_message* reply) {
    std::uint32_t process = 0;
    const bool isKnown = reply != nullptr && sd_bus_message_read(reply, "u", &process) > 0;
    m_events.hostKnown(isKnown ? processName(process) : std::string());
    registerItem();
  };
  m_call =
      callMethod(*m_bus, busDaemon, "GetConnectionUnixProcessID", identified, "s", owner.c_str());
}

void WatcherClient::registerItem() {
  const char* unique = nullptr;
  if (m_bus == nullptr || sd_bus_get_unique_name(m_bus, &unique) < 0) {
    return;
  }
  // The unique name, because some hosts lose items of well-known names.
  m_call = callMethod(
      *m_bus, watcher, "RegisterStatusNotifierItem",
      [this](auto* reply) { registrationAnswered(reply != nullptr); }, "s", unique);
}

void WatcherClient::registrationAnswered(bool isAccepted) {
  if (isAccepted) {
    m_events.taken(true);
    return;
  }
  m_retry = m_main.repeat(m_delay, 0.0, [this] { registerItem(); });
  m_delay = std::min(2.0 * m_delay, longestDelay);
}

} // namespace tidewell
