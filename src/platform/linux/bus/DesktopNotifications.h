#pragma once

#include "base/Observers.h"
#include "platform/NotificationCenter.h"
#include "platform/linux/bus/BusMessages.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>

namespace tidewell {

class Clock;
class SessionBus;

/// Notices over org.freedesktop.Notifications.
///
/// A notice replaces the last one of its identifier as long as the same server runs. It waits while
/// the last one is still being sent. Without a bus the last notice of each identifier waits for
/// one, at most a minute. A server that is absent, refuses or hangs loses only its own notices.
///
/// A notice of low priority has low urgency and is transient. If the server plays no sounds, this
/// class has the sound played once a notice was accepted, unless the server says that it inhibits
/// notices. A server that does not say so within a second does not inhibit.
class DesktopNotifications final : public NotificationCenter {
public:
  /// Plays the desktop's default sound.
  using PlaySound = std::function<void()>;

  /// Borrows bus and clock.
  DesktopNotifications(SessionBus& bus, const Clock& clock, PlaySound playSound);

  /// Does nothing: these servers need no permission.
  void requestAuthorization() override {}
  void add(NotificationRequest request) override;

private:
  /// The notices of one identifier.
  struct Notice {
    std::uint32_t serverId = 0; // 0 until the server has assigned one
    std::optional<NotificationRequest> waiting;
    double requestedAt = 0.0; // of the waiting one, in seconds since 1970
    BusSlot call;             // pending
  };

  void appear(sd_bus& bus);
  void disappear();
  void serverGone();
  void send(Notice& notice);
  [[nodiscard]] BusSlot notify(Notice& notice);
  void answered(Notice& notice, sd_bus_message* reply);
  void askCapabilities();
  void capabilitiesAnswered(sd_bus_message* reply);
  void soundNotice();
  void askWhetherQuiet(std::size_t property);
  void quietAnswered(std::size_t property, bool isQuiet);

  const Clock& m_clock;
  PlaySound m_playSound;
  sd_bus* m_bus = nullptr;
  std::map<std::string, Notice> m_notices;
  std::optional<bool> m_serverPlaysSounds;
  BusSlot m_owner;
  BusSlot m_capabilities;  // the pending call
  BusSlot m_quietQuestion; // the pending call
  Subscription m_lost;
  Subscription m_connected;
};

} // namespace tidewell
