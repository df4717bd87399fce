#pragma once

#include "base/Observers.h"
#include "platform/NotificationCenter.h"
#include "platform/linux/bus/BusMessages.h"

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
class DesktopNotifications final : public NotificationCenter {
public:
  /// Plays the desktop's default sound; called for each notice if the server plays no sounds.
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

  const Clock& m_clock;
  PlaySound m_playSound;
  sd_bus* m_bus = nullptr;
  std::map<std::string, Notice> m_notices;
  std::optional<bool> m_serverPlaysSounds;
  BusSlot m_owner;
  BusSlot m_capabilities; // the pending call
  Subscription m_lost;
  Subscription m_connected;
};

} // namespace tidewell
