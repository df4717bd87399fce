#pragma once

#include "base/Observers.h"
#include "base/Scheduler.h"
#include "platform/linux/bus/BusTypes.h"

#include <functional>
#include <memory>
#include <string>

namespace tidewell {

class SessionBus;

/// Registers the status item with the desktop's watcher, again whenever another watcher takes the
/// name or the bus is a new one. Main thread.
class WatcherClient {
public:
  struct Events {
    /// Hears the name of the process that owns the watcher, empty when it is not known. Called
    /// before each registration, since hosts read the item at once.
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
  void processIdentified(sd_bus_message& reply);
  void registerItem();
  void registrationAnswered(bool isAccepted);

  WorkQueue& m_main;
  Events m_events;
  sd_bus* m_bus = nullptr;
  BusSlot m_match;
  BusSlot m_call; // the call under way, of which there is one at a time
  Seconds m_delay;
  std::unique_ptr<Timer> m_retry;
  Subscription m_lost;
  Subscription m_connected;
};

} // namespace tidewell
