#pragma once

#include "platform/ConfigurationStore.h"
#include "platform/linux/network/DnsServers.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tidewell {

class EventLoop;
class RouteSocket;
class SessionBus;

/// The network configuration as the kernel and the resolver know it.
class LinuxConfigurationStore final : public ConfigurationStore {
public:
  /// Borrows the loop, the socket and the system bus.
  LinuxConfigurationStore(EventLoop& loop, RouteSocket& socket, SessionBus& systemBus,
                          DnsPlaces dnsPlaces = {})
      : m_loop(loop), m_socket(socket), m_systemBus(systemBus), m_dnsPlaces(std::move(dnsPlaces)) {}

  /// The interface of the public route. Without a route, the last answer is repeated while its
  /// device exists.
  [[nodiscard]] std::optional<std::string> primaryInterface() override;

  /// The name of the Wi-Fi network of the primary interface if that is wireless, else of the first
  /// wireless interface that is on a network. Fit for display, because a network's owner may choose
  /// any bytes as its name.
  [[nodiscard]] std::optional<std::string> wifiNetworkName() override;

  [[nodiscard]] Async<std::optional<std::vector<std::string>>> dnsServers() override;

private:
  [[nodiscard]] std::optional<int> publicInterface() const;

  EventLoop& m_loop;
  RouteSocket& m_socket;
  SessionBus& m_systemBus;
  DnsPlaces m_dnsPlaces;
  std::optional<int> m_lastIndex;
};

} // namespace tidewell
