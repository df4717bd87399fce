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

/// The kernel's own view of the network configuration, and the resolver's.
class LinuxConfigurationStore final : public ConfigurationStore {
public:
  /// Borrows the loop and the socket.
  LinuxConfigurationStore(EventLoop& loop, RouteSocket& socket, DnsPlaces dnsPlaces = {})
      : m_loop(loop), m_socket(socket), m_dnsPlaces(std::move(dnsPlaces)) {}

  /// The interface of the public route. While there is no route, the last answer stands as long as
  /// its device exists.
  [[nodiscard]] std::optional<std::string> primaryInterface() override;

  /// Name of the network that the primary interface is on, if that is wireless, else of the first
  /// wireless interface that is on one. Fit for display: what others may see of a Wi-Fi network is
  /// whatever its owner pleased.
  [[nodiscard]] std::optional<std::string> wifiNetworkName() override;

  [[nodiscard]] Async<std::optional<std::vector<std::string>>> dnsServers() override;

private:
  [[nodiscard]] std::optional<int> publicInterface() const;

  EventLoop& m_loop;
  RouteSocket& m_socket;
  DnsPlaces m_dnsPlaces;
  std::optional<int> m_lastIndex;
};

} // namespace tidewell
