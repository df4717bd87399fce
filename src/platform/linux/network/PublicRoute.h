#pragma once

#include <optional>
#include <string>

namespace tidewell {

class RouteSocket;

/// How traffic to the public internet leaves the machine.
struct PublicRoute {
  int interfaceIndex = 0;
  std::string interfaceName;
  /// The IPv4 address, as four bytes, that the traffic leaves with; empty on an IPv6 route.
  std::string sourceIPv4;
  /// Whether the interface is up and has its carrier.
  bool isRunning = false;
};

/// The route that the kernel would take to a public address: over IPv4, else over IPv6; one whose
/// interface runs before one whose interface does not. None without a route. The kernel's choice
/// also where a tunnel takes the traffic without owning the default route. Nothing is sent. Any
/// thread.
[[nodiscard]] std::optional<PublicRoute> publicRoute(RouteSocket& socket);

} // namespace tidewell
