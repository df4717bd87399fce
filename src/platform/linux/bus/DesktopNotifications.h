#pragma once

#include "base/Observers.h"
#include "platform/NotificationCenter.h"
#include "platform/linux/bus/BusTypes.h"

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
/// A notice takes the place of the last one of its identifier as long as the same server runs; one
/// that is asked for while the last is still on its way waits for it. Without a bus the last of
/// each identifier waits for one, a minute at the most; a server that is absent, refuses or hangs
/// loses its notices and nothing else. Main thread.
class DesktopNotifications final : public NotificationCenter {
public:
  /// Plays the desktop's default sound; called for a notice whose server plays none itself.
  using PlaySound = std::function<void()>;

  /// Borrows bus and clock.
  DesktopNotifications(SessionBus& bus, const Clock& clock, PlaySound playSound);

  /// Desktops ask nothing beforehand.
  void requestAuthorization() override {}
  void add(NotificationRequest request) override;

private:
  /// What is known of the notices of one identifier.
  struct Notice {
    DesktopNotifications* center = nullptr;
    std::uint32_t serverId = 0; // 0 until the server has given one
    std::optional<NotificationRequest> waiting;
    double askedAt = 0.0; // the one that waits, in seconds since 1970
    BusSlot call;         // under way
  };

  void appear(sd_bus& bus);
  void disappear();
  void serverGone();
  void send(Notice& notice);
  [[nodiscard]] BusSlot notify(Notice& notice);
  void answered(Notice& notice, sd_bus_message& reply);
  void askCapabilities();
  void capabilitiesAnswered(sd_bus_message& reply);
  void soundNotice();

  const Clock& m_clock;
  PlaySound m_playSound;
  sd_bus* m_bus = nullptr;
  std::map<std::string, Notice> m_notices;
  std::optional<bool> m_serverPlaysSounds;
  BusSlot m_ownerMatch;
  BusSlot m_capabilities; // the question under way
  Subscription m_lost;
  Subscription m_connected;
};

} // namespace tidewell
