#pragma once

#include "base/Async.h"
#include "base/Interface.h"

#include <optional>
#include <string>
#include <vector>

namespace tidewell {

/// Reads the machine's network configuration.
class ConfigurationStore : public Interface {
public:
  /// Name of the interface that carries traffic to the public internet, or last carried it; nullopt
  /// if there was none. Queries the system at every call.
  [[nodiscard]] virtual std::optional<std::string> primaryInterface() = 0;

  /// Name of the current Wi-Fi network; nullopt without one.
  [[nodiscard]] virtual std::optional<std::string> wifiNetworkName() = 0;

  /// Addresses of the DNS servers in use as text, in order of preference; empty if they are not
  /// known. May wait briefly.
  [[nodiscard]] virtual Async<std::optional<std::vector<std::string>>> dnsServers() = 0;
};

} // namespace tidewell
