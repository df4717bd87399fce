#pragma once

#include "helpers/nettop/Measurement.h"
#include "helpers/nettop/bpf/records.h"

#include <cstdint>
#include <functional>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tidewell::nettop {

/// Adds up the sockets of each process. Pure; not synchronised.
///
/// Traffic through a tunnel that a program serves (a VPN client behind /dev/net/tun) passes twice:
/// once as that of the program it is for, once more, wrapped up, as that of the tunnel's server.
/// The server is left with what it adds: its own bytes less those that went through the tunnels.
class TrafficTable {
public:
  /// Counts one socket in.
  void add(const SocketTraffic& socket);

  /// The owners of the sockets so far, 0 for unknown ones.
  [[nodiscard]] std::vector<std::uint32_t> owners() const;

  /// Tells who an owner is. Owners of whom nothing is told remain unknown.
  void name(std::uint32_t owner, const ProcessRecord& record);

  /// The processes that moved something, in no order.
  [[nodiscard]] std::vector<ProcessTraffic> rows() const;

private:
  struct Entry {
    ProcessTraffic traffic;
    bool servesTunnel = false;
  };

  std::unordered_map<std::uint32_t, Entry> m_entries;
  std::uint64_t m_tunnelReceived = 0;
  std::uint64_t m_tunnelSent = 0;
};

} // namespace tidewell::nettop
