#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tidewell {

/// Details of the current connection. A value that is not known is the text "--".
struct ConnectionInfo {
  /// Kind of a link.
  enum class InterfaceType { wifi, ethernet, cellular, other };

  /// Wi-Fi network name, or "Ethernet", "Wi-Fi" or "Unknown".
  std::string networkName = "Unknown";
  /// Link kind and device for display, such as "Wi-Fi (wlan0)".
  std::string interfaceName = "en0";
  InterfaceType interfaceType = InterfaceType::wifi;
  /// Dotted-decimal IPv4 address of the primary interface.
  std::string ipAddress = "--";
  /// The address under which the internet sees this machine.
  std::string publicIP = "--";
  /// The first DNS server.
  std::string dns = "--";
  /// Kept for views that can show one; nothing fills it in.
  std::optional<int> signalStrength;

  friend bool operator==(const ConnectionInfo&, const ConnectionInfo&) = default;
};

/// The address that copying gives: the public one, or the local one while that is not known.
[[nodiscard]] const std::string& addressToCopy(const ConnectionInfo& info);

/// The name of a link kind, as it is shown and sent: "Wi-Fi", "Ethernet", "Cellular" or "Other".
[[nodiscard]] std::string_view rawValue(ConnectionInfo::InterfaceType type);

/// The link kind of exactly this name; none for any other text.
[[nodiscard]] std::optional<ConnectionInfo::InterfaceType> interfaceType(std::string_view rawValue);

} // namespace tidewell
