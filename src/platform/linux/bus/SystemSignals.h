#pragma once

#include "base/Observers.h"
#include "platform/linux/bus/BusMessages.h"

#include <functional>

namespace tidewell {

class SessionBus;

/// Passes on what programs of the system announce on its bus.
class SystemSignals {
public:
  struct Handlers {
    /// The login manager: the machine is about to sleep, or awake again.
    std::function<void(bool isSleeping)> sleeping;
    /// connman: the DNS servers of one of its services changed. Its file names only its proxy.
    std::function<void()> dnsServersChanged;
  };

  /// Borrows the system bus.
  SystemSignals(SessionBus& systemBus, Handlers handlers);

private:
  void connected(sd_bus& bus);
  void lost();

  Handlers m_handlers;
  BusSlot m_sleep;
  BusSlot m_dnsServers;
  Subscription m_lost;
  Subscription m_connected;
};

} // namespace tidewell
