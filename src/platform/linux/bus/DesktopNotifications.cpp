#include "platform/linux/bus/DesktopNotifications.h"

#include "base/Clock.h"
#include "base/Scheduler.h"
#include "platform/linux/bus/SessionBus.h"

#include <string_view>
#include <utility>

namespace tidewell {
namespace {

constexpr BusService notifications{"org.freedesktop.Notifications",
                                   "/org/freedesktop/Notifications"};

constexpr const char* applicationName = "Tidewell";
constexpr const char* desktopEntry = "com.halden.Tidewell";

// From the sound naming rules that desktops share.
constexpr const char* defaultSound = "message-new-instant";

// The server decides how long a notice is shown.
constexpr std::int32_t defaultExpiry = -1;

// Older notices are dropped.
constexpr Seconds longestWait = 60.0;

/// Whether a change of owner ends a server, rather than starting the first one.
bool hadOwner(sd_bus_message* ownerChange) {
  const char* before = nullptr;
  return sd_bus_message_read(ownerChange, "sss", nullptr, &before, nullptr) > 0 && *before != '\0';
}

} // namespace

DesktopNotifications::DesktopNotifications(SessionBus& bus, const Clock& clock, PlaySound playSound)
    : m_clock(clock), m_playSound(std::move(playSound)),
      m_lost(bus.onLost([this] { disappear(); })),
      m_connected(bus.onConnected([this](sd_bus& connection) { appear(connection); })) {}

void DesktopNotifications::add(NotificationRequest request) {
  Notice& notice = m_notices[request.identifier];
  notice.waiting = std::move(request);
  notice.requestedAt = m_clock.now();
  send(notice);
}

void DesktopNotifications::appear(sd_bus& bus) {
  m_bus = &bus;
  m_owner = watchOwner(bus, notifications.name, [this](sd_bus_message* change) {
    if (hadOwner(change)) {
      serverGone();
    }
  });
  for (auto& [identifier, notice] : m_notices) {
    send(notice);
  }
}

void DesktopNotifications::disappear() {
  m_bus = nullptr;
  m_owner.reset();
  serverGone();
}

void DesktopNotifications::serverGone() {
  m_serverPlaysSounds.reset();
  m_capabilities.reset();
  for (auto& [identifier, notice] : m_notices) {
    // The next server uses the same numbers for other notices.
    notice.serverId = 0;
    notice.call.reset();
    send(notice);
  }
}

void DesktopNotifications::send(Notice& notice) {
  if (m_bus == nullptr || notice.call || !notice.waiting) {
    return;
  }
  if (m_clock.now() - notice.requestedAt > longestWait) {
    notice.waiting.reset();
    return;
  }
  notice.call = notify(notice);
  // Null if the connection is closing; the notice then waits for the next connection.
  if (notice.call) {
    notice.waiting.reset();
  }
}

BusSlot DesktopNotifications::notify(Notice& notice) {
  return callMethod(
      *m_bus, notifications, "Notify", [this, &notice](auto* reply) { answered(notice, reply); },
      "susssasa{sv}i", applicationName, notice.serverId, desktopEntry,
      notice.waiting->title.c_str(), notice.waiting->body.c_str(), 0, 2, "desktop-entry", "s",
      desktopEntry, "sound-name", "s", defaultSound, defaultExpiry);
}

void DesktopNotifications::answered(Notice& notice, sd_bus_message* reply) {
  notice.call.reset();
  if (reply != nullptr && sd_bus_message_read(reply, "u", &notice.serverId) > 0) {
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
  m_capabilities = callMethod(*m_bus, notifications, "GetCapabilities",
                              [this](auto* reply) { capabilitiesAnswered(reply); });
}

void DesktopNotifications::capabilitiesAnswered(sd_bus_message* reply) {
  m_capabilities.reset();
  if (reply == nullptr || sd_bus_message_enter_container(reply, 'a', "s") <= 0) {
    return;
  }
  bool playsSounds = false;
  const char* capability = nullptr;
  while (sd_bus_message_read(reply, "s", &capability) > 0) {
    playsSounds = playsSounds || std::string_view(capability) == "sound";
  }
  m_serverPlaysSounds = playsSounds;
  soundNotice();
}

} // namespace tidewell
