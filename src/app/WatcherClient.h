#pragma once

#include "base/Observers.h"
#include "base/Scheduler.h"
#include "platform/linux/bus/BusMessages.h"

#include <functional>
#include <memory>
#include <string>

namespace tidewell {

class SessionBus;

/// Registers the status item with the desktop's watcher, again for every new owner of the watcher's
/// name and every new bus connection.
class WatcherClient {
public:
  struct Events {
    /// Receives the name of the watcher's process, empty if it is not known. Called before each
    /// registration, because hosts read the item at once.
    std::function<void(const std::string& process)> hostKnown;
    /// A watcher has taken the item, or is gone again.
    std::function<void(bool isTaken)> taken;
  };

  /// Borrows queue and bus.
  WatcherClient(WorkQueue& main, SessionBus& bus, Events events);

private:
  void appear(sd_bus& bus);
  void disappear();
  void ownerChanged(const std::string& owner);
  void registerItem();
  void registrationAnswered(bool isAccepted);

  WorkQueue& m_main;
  Events m_events;
  sd_bus* m_bus = nullptr;
  BusSlot m_match;
  BusSlot m_call; // at most one at a time
  Seconds m_delay;
  std::unique_ptr<Timer> m_retry;
  Subscription m_lost;
  Subscription m_connected;
};

} // namespace tidewell
