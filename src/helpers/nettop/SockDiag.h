#pragma once

#include "helpers/nettop/TcpTraffic.h"
#include "platform/linux/network/NetlinkSocket.h"

#include <cstdint>
#include <vector>

namespace tidewell::nettop {

/// Reads the TCP sockets of a datagram of sock_diag(7). Any bytes may be given; skips what is cut
/// short or of another kind. Pure.
[[nodiscard]] std::vector<TcpReading> parseSockDiag(NetlinkBytes datagram);

/// A request for the TCP sockets of an address family (AF_INET or AF_INET6) that can have moved
/// something. Pure.
[[nodiscard]] NetlinkRequest tcpRequest(std::uint8_t family);

/// Asks the kernel for the TCP sockets of this network namespace. Needs no privilege.
class TcpSockets {
public:
  /// Adds all sockets of both address families. Returns false if the kernel reports neither.
  [[nodiscard]] bool addTo(TcpReadings& readings);

private:
  NetlinkSocket m_socket{NETLINK_SOCK_DIAG};
};

/// Collects TCP sockets of this network namespace closed since construction. Needs no privilege.
class TcpEnds {
public:
  TcpEnds();

  /// Adds the sockets that were closed since the last call, without waiting. What did not fit the
  /// kernel's queue in between is lost, so call it ten times a second.
  void addTo(TcpReadings& readings) const;

private:
  FileDescriptor m_socket;
};

} // namespace tidewell::nettop
