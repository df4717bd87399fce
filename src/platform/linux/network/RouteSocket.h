#pragma once

#include "platform/linux/network/NetlinkSocket.h"

#include <optional>
#include <span>
#include <string>

namespace tidewell {

/// How traffic to the public internet leaves the machine.
struct PublicRoute {
  int interfaceIndex = 0;
  std::string interfaceName;
  /// The IPv4 source address of the traffic, as four bytes; empty on an IPv6 route.
  std::string sourceIPv4;
  /// The next router's address in network order; empty without one.
  std::string gateway;
  /// Whether the interface is up and has its carrier.
  bool isRunning = false;
};

/// A route in a reply to RTM_GETROUTE.
struct RouteReply {
  int interfaceIndex = 0;
  /// The preferred source address in network order; empty if the kernel names none.
  std::string source;
  /// The next router's address in network order; empty without one. It may be of another family.
  std::string gateway;
};

/// Reads the first route of a reply. Returns nullopt if it is not a unicast route with an
/// interface. Any bytes may be given. Pure.
[[nodiscard]] std::optional<RouteReply> parseRoute(NetlinkBytes reply);

/// Asks the kernel's tables of routes and devices. All members return nullopt on any failure.
class RouteSocket {
public:
  /// The route that the kernel would take to most of the internet: over IPv4, else over IPv6. A
  /// route whose interface is running takes precedence. Covers tunnels that take the traffic
  /// without owning the default route. A device that translates IPv4 into IPv6 is passed over for
  /// the link below it. Sends nothing.
  [[nodiscard]] std::optional<PublicRoute> publicRoute();

  /// The name of the interface with this index.
  [[nodiscard]] std::optional<std::string> interfaceName(int index);

private:
  /// The route that two of these addresses of one family share; that of the first if none do.
  [[nodiscard]] std::optional<PublicRoute> route(std::span<const NetlinkBytes, 3> witnesses);
  [[nodiscard]] std::optional<RouteReply> replyFor(NetlinkBytes address);
  [[nodiscard]] std::optional<bool> isRunning(const std::string& interface);

  NetlinkSocket m_socket{NETLINK_ROUTE};
};

} // namespace tidewell
