#include "platform/linux/network/LinuxConfigurationStore.h"

#include "platform/linux/network/RouteSocket.h"
#include "platform/linux/network/WifiName.h"

namespace tidewell {

std::optional<std::string> LinuxConfigurationStore::primaryInterface() {
  if (auto route = m_socket.publicRoute()) {
    m_lastIndex = route->interfaceIndex;
    return std::move(route->interfaceName);
  }
  if (!m_lastIndex) {
    return std::nullopt;
  }
  auto name = m_socket.interfaceName(*m_lastIndex);
  if (!name) {
    m_lastIndex.reset();
  }
  return name;
}

std::optional<std::string> LinuxConfigurationStore::wifiNetworkName() {
  return askWifiName(publicInterface());
}

Async<std::optional<std::vector<std::string>>> LinuxConfigurationStore::dnsServers() {
  return findDnsServers(m_loop, m_systemBus, m_dnsPlaces, publicInterface());
}

std::optional<int> LinuxConfigurationStore::publicInterface() const {
  const auto route = m_socket.publicRoute();
  return route ? std::optional(route->interfaceIndex) : std::nullopt;
}

} // namespace tidewell
