#include "platform/linux/bus/SystemSignals.h"

#include "platform/linux/bus/SessionBus.h"

#include <utility>

namespace tidewell {
namespace {

constexpr const char* prepareForSleep =
    "type='signal',sender='org.freedesktop.login1',path='/org/freedesktop/login1',"
    "interface='org.freedesktop.login1.Manager',member='PrepareForSleep'";

constexpr const char* nameserversChanged =
    "type='signal',sender='net.connman',interface='net.connman.Service',"
    "member='PropertyChanged',arg0='Nameservers'";

} // namespace

SystemSignals::SystemSignals(SessionBus& systemBus, Handlers handlers)
    : m_handlers(std::move(handlers)), m_lost(systemBus.onLost([this] { lost(); })),
      m_connected(systemBus.onConnected([this](sd_bus& bus) { connected(bus); })) {}

void SystemSignals::connected(sd_bus& bus) {
  m_sleep = watchSignal(bus, prepareForSleep, [this](sd_bus_message* signal) {
    int isSleeping = 0;
    if (sd_bus_message_read(signal, "b", &isSleeping) > 0) {
      m_handlers.sleeping(isSleeping != 0);
    }
  });
  m_dnsServers = watchSignal(bus, nameserversChanged,
                             [this](sd_bus_message*) { m_handlers.dnsServersChanged(); });
}

void SystemSignals::lost() {
  m_sleep.reset();
  m_dnsServers.reset();
}

} // namespace tidewell
