#pragma once

#include "base/Translation.h"

#include <optional>
#include <string>
#include <string_view>

namespace tidewell {

/// Details of the current connection. An unknown value is "--".
struct ConnectionInfo {
  /// Kind of a link.
  enum class InterfaceType { wifi, ethernet, cellular, other };

  /// Wi-Fi network name, or "Ethernet", "Wi-Fi" or "Unknown".
  std::string networkName = translatable("Unknown");
  /// Link kind and device for display, such as "Wi-Fi (wlan0)".
  std::string interfaceName = "en0";
  InterfaceType interfaceType = InterfaceType::wifi;
  /// Dotted-decimal IPv4 address of the primary interface.
  std::string ipAddress = "--";
  /// The address under which the internet sees this machine.
  std::string publicIP = "--";
  /// The first DNS server.
  std::string dns = "--";
  /// Reserved for views; never set.
  std::optional<int> signalStrength;

  friend bool operator==(const ConnectionInfo&, const ConnectionInfo&) = default;
};

/// The address to copy: the public one, or the local one if that is unknown.
[[nodiscard]] const std::string& addressToCopy(const ConnectionInfo& info);

/// The name of a link kind as shown and sent: "Wi-Fi", "Ethernet", "Cellular" or "Other".
[[nodiscard]] std::string_view rawValue(ConnectionInfo::InterfaceType type);

/// The link kind with exactly this name; nullopt for any other text.
[[nodiscard]] std::optional<ConnectionInfo::InterfaceType> interfaceType(std::string_view rawValue);

} // namespace tidewell
