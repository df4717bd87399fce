#pragma once

#include "platform/ConfigurationStore.h"

#include <mutex>
#include <optional>
#include <string>

namespace tidewell {

class RouteSocket;

/// The kernel's own view of the network configuration.
class LinuxConfigurationStore final : public ConfigurationStore {
public:
  /// Borrows the socket.
  explicit LinuxConfigurationStore(RouteSocket& socket) : m_socket(socket) {}

  /// The interface through which the kernel would reach a public address (IPv4, then IPv6), which
  /// finds the right one also where a tunnel takes the traffic without owning the default route.
  /// While there is no route, the last answer stands as long as its device exists.
  [[nodiscard]] std::optional<std::string> primaryInterface() override;

private:
  RouteSocket& m_socket;
  std::mutex m_mutex;
  std::optional<int> m_lastIndex; // guarded by m_mutex
};

} // namespace tidewell
