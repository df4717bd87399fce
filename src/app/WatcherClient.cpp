#include "app/WatcherClient.h"

#include "platform/linux/bus/SessionBus.h"
#include "platform/linux/process/ProcessName.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace tidewell {

namespace {

constexpr const char* watcherName = "org.kde.StatusNotifierWatcher";
constexpr const char* watcherPath = "/StatusNotifierWatcher";

constexpr const char* busName = "org.freedesktop.DBus";
constexpr const char* busPath = "/org/freedesktop/DBus";

// A watcher that refuses is asked again after so long, then twice as long, up to a minute.
constexpr Seconds firstDelay = 2.0;
constexpr Seconds longestDelay = 60.0;

constexpr const char* ownerMatch =
    "type='signal',sender='org.freedesktop.DBus',path='/org/freedesktop/DBus',"
    "interface='org.freedesktop.DBus',member='NameOwnerChanged',"
    "arg0='org.kde.StatusNotifierWatcher'";

bool isError(sd_bus_message& reply) { return sd_bus_message_is_method_error(&reply, nullptr) != 0; }

std::string readText(sd_bus_message& message) {
  const char* text = nullptr;
  return sd_bus_message_read(&message, "s", &text) > 0 && text != nullptr ? text : std::string();
}

} // namespace

WatcherClient::WatcherClient(WorkQueue& main, SessionBus& bus, Events events)
    : m_main(main), m_events(std::move(events)), m_delay(firstDelay),
      m_lost(bus.onLost([this] { disappear(); })),
      m_connected(bus.onConnected([this](sd_bus& connection) { appear(connection); })) {}

void WatcherClient::appear(sd_bus& bus) {
  m_bus = &bus;
  const auto changed = [](sd_bus_message* signal, void* self, sd_bus_error*) {
    const char* owner = nullptr;
    if (sd_bus_message_read(signal, "sss", nullptr, nullptr, &owner) > 0) {
      static_cast<WatcherClient*>(self)->ownerChanged(owner);
    }
    return 0;
  };
  m_match = takeFrom<BusSlot>([&](sd_bus_slot** slot) {
    return sd_bus_add_match_async(&bus, slot, ownerMatch, changed, nullptr, this);
  });
  const auto found = [](sd_bus_message* reply, void* self, sd_bus_error*) {
    static_cast<WatcherClient*>(self)->ownerChanged(isError(*reply) ? "" : readText(*reply));
    return 0;
  };
  m_call = takeFrom<BusSlot>([&](sd_bus_slot** slot) {
    return sd_bus_call_method_async(&bus, slot, busName, busPath, busName, "GetNameOwner", found,
                                    this, "s", watcherName);
  });
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
  // Also when one watcher takes the place of another, which may not take the item.
  m_events.taken(false);
  if (owner.empty() || m_bus == nullptr) {
    return;
  }
  const auto identified = [](sd_bus_message* reply, void* self, sd_bus_error*) {
    static_cast<WatcherClient*>(self)->processIdentified(*reply);
    return 0;
  };
  m_call = takeFrom<BusSlot>([&](sd_bus_slot** slot) {
    return sd_bus_call_method_async(m_bus, slot, busName, busPath, busName,
                                    "GetConnectionUnixProcessID", identified, this, "s",
                                    owner.c_str());
  });
}

void WatcherClient::processIdentified(sd_bus_message& reply) {
  std::uint32_t process = 0;
  const bool isKnown = !isError(reply) && sd_bus_message_read(&reply, "u", &process) > 0;
  m_events.hostKnown(isKnown ? processName(process) : std::string());
  registerItem();
}

void WatcherClient::registerItem() {
  const char* unique = nullptr;
  if (m_bus == nullptr || sd_bus_get_unique_name(m_bus, &unique) < 0) {
    return;
  }
  const auto answered = [](sd_bus_message* reply, void* self, sd_bus_error*) {
    static_cast<WatcherClient*>(self)->registrationAnswered(!isError(*reply));
    return 0;
  };
  // The unique name: hosts were seen to lose items of well-known names.
  m_call = takeFrom<BusSlot>([&](sd_bus_slot** slot) {
    return sd_bus_call_method_async(m_bus, slot, watcherName, watcherPath, watcherName,
                                    "RegisterStatusNotifierItem", answered, this, "s", unique);
  });
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
