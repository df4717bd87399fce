#pragma once

#include "base/Async.h"

#include <optional>
#include <string>
#include <vector>

namespace tidewell {

/// Answers questions about the machine's network configuration.
class ConfigurationStore {
public:
  ConfigurationStore() = default;
  ConfigurationStore(const ConfigurationStore&) = delete;
  ConfigurationStore& operator=(const ConfigurationStore&) = delete;
  virtual ~ConfigurationStore() = default;

  /// Name of the interface that carries traffic to the public internet; none when nothing does and
  /// nothing did. Asked of the system at every call.
  [[nodiscard]] virtual std::optional<std::string> primaryInterface() = 0;

  /// Name of the Wi-Fi network that the machine is on; none without one.
  [[nodiscard]] virtual std::optional<std::string> wifiNetworkName() = 0;

  /// Addresses of the DNS servers in use, as text, first choice first; none when the system does
  /// not tell. Waits briefly.
  [[nodiscard]] virtual Async<std::optional<std::vector<std::string>>> dnsServers() = 0;
};

} // namespace tidewell
