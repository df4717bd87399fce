#include "platform/linux/bus/DesktopNotifications.h"

#include "base/Clock.h"
#include "base/Scheduler.h"
#include "platform/linux/bus/SessionBus.h"

#include <string_view>
#include <utility>

namespace tidewell {

namespace {

constexpr const char* serverName = "org.freedesktop.Notifications";
constexpr const char* serverPath = "/org/freedesktop/Notifications";

constexpr const char* applicationName = "Tidewell";
constexpr const char* desktopEntry = "com.halden.Tidewell";

// From the sound naming rules that desktops share.
constexpr const char* defaultSound = "message-new-instant";

// The server decides for how long a notice shows.
constexpr std::int32_t defaultExpiry = -1;

// What a notice tells is old news after that.
constexpr Seconds longestWait = 60.0;

constexpr const char* ownerMatch =
    "type='signal',sender='org.freedesktop.DBus',path='/org/freedesktop/DBus',"
    "interface='org.freedesktop.DBus',member='NameOwnerChanged',"
    "arg0='org.freedesktop.Notifications'";

bool isError(sd_bus_message& reply) { return sd_bus_message_is_method_error(&reply, nullptr) != 0; }

/// Whether a change of owner is the end of a server, not the start of one that was awaited.
bool hadOwner(sd_bus_message& ownerChange) {
  const char* before = nullptr;
  return sd_bus_message_read(&ownerChange, "sss", nullptr, &before, nullptr) > 0 && *before != '\0';
}

} // namespace

DesktopNotifications::DesktopNotifications(SessionBus& bus, const Clock& clock, PlaySound playSound)
    : m_clock(clock), m_playSound(std::move(playSound)),
      m_lost(bus.onLost([this] { disappear(); })),
      m_connected(bus.onConnected([this](sd_bus& connection) { appear(connection); })) {}

void DesktopNotifications::add(NotificationRequest request) {
  Notice& notice = m_notices[request.identifier];
  notice.center = this;
  notice.waiting = std::move(request);
  notice.askedAt = m_clock.now();
  send(notice);
}

void DesktopNotifications::appear(sd_bus& bus) {
  m_bus = &bus;
  const auto changed = [](sd_bus_message* signal, void* self, sd_bus_error*) {
    if (hadOwner(*signal)) {
      static_cast<DesktopNotifications*>(self)->serverGone();
    }
    return 0;
  };
  m_ownerMatch = takeFrom<BusSlot>([&](sd_bus_slot** slot) {
    return sd_bus_add_match_async(&bus, slot, ownerMatch, changed, nullptr, this);
  });
  for (auto& [identifier, notice] : m_notices) {
    send(notice);
  }
}

void DesktopNotifications::disappear() {
  m_bus = nullptr;
  m_ownerMatch.reset();
  serverGone();
}

void DesktopNotifications::serverGone() {
  m_serverPlaysSounds.reset();
  m_capabilities.reset();
  for (auto& [identifier, notice] : m_notices) {
    // Its number, also one that it may still answer, is somebody else's notice at the next server.
    notice.serverId = 0;
    notice.call.reset();
    send(notice);
  }
}

void DesktopNotifications::send(Notice& notice) {
  if (m_bus == nullptr || notice.call || !notice.waiting) {
    return;
  }
  if (m_clock.now() - notice.askedAt > longestWait) {
    notice.waiting.reset();
    return;
  }
  notice.call = notify(notice);
  // A connection that is about to end takes no calls; the notice then waits for the next one.
  if (notice.call) {
    notice.waiting.reset();
  }
}

BusSlot DesktopNotifications::notify(Notice& notice) {
  const auto heard = [](sd_bus_message* reply, void* sent, sd_bus_error*) {
    auto& itsNotice = *static_cast<Notice*>(sent);
    itsNotice.center->answered(itsNotice, *reply);
    return 0;
  };
  return takeFrom<BusSlot>([&](sd_bus_slot** slot) {
    return sd_bus_call_method_async(m_bus, slot, serverName, serverPath, serverName, "Notify",
                                    heard, &notice, "susssasa{sv}i", applicationName,
                                    notice.serverId, desktopEntry, notice.waiting->title.c_str(),
                                    notice.waiting->body.c_str(), 0, 2, "desktop-entry", "s",
                                    desktopEntry, "sound-name", "s", defaultSound, defaultExpiry);
  });
}

void DesktopNotifications::answered(Notice& notice, sd_bus_message& reply) {
  notice.call.reset();
  if (!isError(reply) && sd_bus_message_read(&reply, "u", &notice.serverId) > 0) {
    soundNotice();
  }
  send(notice);
}

void DesktopNotifications::soundNotice() {
  if (!m_serverPlaysSounds) {
    askCapabilities();
  } else if (!*m_serverPlaysSounds) {
    m_playSound();
  }
}

void DesktopNotifications::askCapabilities() {
  if (m_bus == nullptr || m_capabilities) {
    return;
  }
  const auto heard = [](sd_bus_message* reply, void* self, sd_bus_error*) {
    static_cast<DesktopNotifications*>(self)->capabilitiesAnswered(*reply);
    return 0;
  };
  m_capabilities = takeFrom<BusSlot>([&](sd_bus_slot** slot) {
    return sd_bus_call_method_async(m_bus, slot, serverName, serverPath, serverName,
                                    "GetCapabilities", heard, this, nullptr);
  });
}

void DesktopNotifications::capabilitiesAnswered(sd_bus_message& reply) {
  m_capabilities.reset();
  if (isError(reply) || sd_bus_message_enter_container(&reply, 'a', "s") <= 0) {
    return;
  }
  bool playsSounds = false;
  const char* capability = nullptr;
  while (sd_bus_message_read(&reply, "s", &capability) > 0) {
    playsSounds = playsSounds || std::string_view(capability) == "sound";
  }
  m_serverPlaysSounds = playsSounds;
  soundNotice();
}

} // namespace tidewell
