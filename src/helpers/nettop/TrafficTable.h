#pragma once

#include "helpers/nettop/Measurement.h"
#include "helpers/nettop/bpf/records.h"

#include <cstdint>
#include <functional>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tidewell::nettop {

/// Adds up the sockets of each process. Pure.
///
/// Traffic through a tunnel that a program serves (a VPN client with /dev/net/tun) is counted
/// twice: as that of the program it belongs to, and, encapsulated, as that of the tunnel's server.
/// The bytes that went through the tunnels are subtracted from the server's.
class TrafficTable {
public:
  /// Adds a socket.
  void add(const SocketTraffic& socket);

  /// Adds the bytes of sockets that are not known because there were too many.
  void addLost(std::uint64_t received, std::uint64_t sent);

  /// The owners of the sockets so far; 0 for unknown ones.
  [[nodiscard]] std::vector<std::uint32_t> owners() const;

  /// Sets what is known about an owner. The others remain unknown.
  void name(std::uint32_t owner, const ProcessRecord& record);

  /// The processes that moved something, in no order. Beside them "unknown" for the traffic of
  /// unknown owners, and "too many sockets" for what was lost.
  [[nodiscard]] std::vector<ProcessTraffic> rows() const;

private:
  struct Entry {
    ProcessTraffic traffic;
    bool servesTunnel = false;
  };

  std::unordered_map<std::uint32_t, Entry> m_entries;
  ProcessTraffic m_lost{"too many sockets"};
  std::uint64_t m_tunnelReceived = 0;
  std::uint64_t m_tunnelSent = 0;
};

} // namespace tidewell::nettop
