#include "platform/linux/bus/DesktopNotifications.h"

#include "base/Clock.h"
#include "base/Scheduler.h"
#include "platform/linux/bus/SessionBus.h"

#include <array>
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

// Values of the hint "urgency" in the notifications protocol.
constexpr int lowUrgency = 0;
constexpr int normalUrgency = 1;

/// A boolean of the server that is true while notices must not be heard.
struct QuietProperty {
  const char* interface;
  const char* name;
};
// The protocol's is known from Plasma. dunst has only its own.
constexpr std::array<QuietProperty, 2> quietProperties = {
    {{"org.freedesktop.Notifications", "Inhibited"}, {"org.dunstproject.cmd0", "paused"}}};

// For each of them. A sound that comes later would no longer seem to belong to its notice.
constexpr std::uint64_t quietWaitUsec = 1'000'000;

// Older notices are dropped.
constexpr Seconds longestWait = 60.0;

/// Whether a change of owner ends a server, rather than starting the first one.
bool hadOwner(sd_bus_message* ownerChange) {
  const char* before = nullptr;
  return sd_bus_message_read(ownerChange, "sss", nullptr, &before, nullptr) > 0 && *before != '\0';
}

/// Whether the reply of a property's `Get` holds true.
bool isTrue(sd_bus_message* reply) {
  int value = 0;
  return reply != nullptr && sd_bus_message_read(reply, "v", "b", &value) > 0 && value != 0;
}

BusMessage makeCall(sd_bus& bus, const char* interface, const char* method) {
  return takeFrom<BusMessage>([&](sd_bus_message** made) {
    return sd_bus_message_new_method_call(&bus, made, notifications.name, notifications.path,
                                          interface, method);
  });
}

/// Sends a call, null if it could not be made. `limit` in microseconds, 0 for the library's.
BusSlot sendCall(sd_bus& bus, const BusMessage& call, std::uint64_t limit, BusHandler answered) {
  if (!call) {
    return nullptr;
  }
  return withHandler(std::move(answered), [&](auto** slot, auto callback, void* own) {
    return sd_bus_call_async(&bus, slot, call.get(), callback, own, limit);
  });
}

int appendNotice(sd_bus_message& call, const NotificationRequest& request, std::uint32_t replaces) {
  const bool isLow = request.priority == NotificationPriority::low;
  BusWriter writer(call);
  writer.add("susssas", applicationName, replaces, desktopEntry, request.title.c_str(),
             request.body.c_str(), 0);
  writer.open('a', "{sv}").add("{sv}", "desktop-entry", "s", desktopEntry);
  writer.add("{sv}", "sound-name", "s", defaultSound);
  writer.add("{sv}", "urgency", "y", isLow ? lowUrgency : normalUrgency);
  if (isLow) {
    writer.add("{sv}", "transient", "b", 1); // need not be kept once it was shown
  }
  return writer.close().add("i", defaultExpiry).result();
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
  m_quietQuestion.reset();
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
  const BusMessage call = makeCall(*m_bus, notifications.name, "Notify");
  if (!call || appendNotice(*call, *notice.waiting, notice.serverId) < 0) {
    return nullptr;
  }
  return sendCall(*m_bus, call, 0, [this, &notice](auto* reply) { answered(notice, reply); });
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
  } else if (!*m_serverPlaysSounds && !m_quietQuestion) {
    askWhetherQuiet(0);
  }
}

void DesktopNotifications::askWhetherQuiet(std::size_t property) {
  if (property == quietProperties.size()) {
    m_playSound();
    return;
  }
  if (m_bus == nullptr) {
    return;
  }
  const QuietProperty& asked = quietProperties.at(property);
  const BusMessage call = makeCall(*m_bus, propertiesInterface, "Get");
  if (call && sd_bus_message_append(call.get(), "ss", asked.interface, asked.name) >= 0) {
    m_quietQuestion = sendCall(*m_bus, call, quietWaitUsec, [this, property](auto* reply) {
      quietAnswered(property, isTrue(reply));
    });
  }
}

void DesktopNotifications::quietAnswered(std::size_t property, bool isQuiet) {
  m_quietQuestion.reset();
  if (!isQuiet) {
    askWhetherQuiet(property + 1);
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
