#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace tidewell::nettop {

/// One end of a TCP connection.
struct TcpEnd {
  std::array<std::uint32_t, 4> address{}; // network order; an IPv4 address is in the first alone
  std::uint16_t port = 0;                 // network order

  friend auto operator<=>(const TcpEnd&, const TcpEnd&) = default; // NOLINT(modernize-use-nullptr)
};

/// A TCP socket with its counters.
struct TcpReading {
  std::uint64_t cookie = 0; // identifies the socket for good
  std::uint32_t inode = 0;  // 0 once nobody holds it
  std::uint32_t user = 0;
  TcpEnd local;
  TcpEnd remote;
  bool isLoopback = false; // connects the machine with itself, judged by the addresses
  /// Since its beginning: payload, including retransmissions sent, and a header for each segment.
  std::uint64_t received = 0;
  std::uint64_t sent = 0;
};

using TcpReadings = std::unordered_map<std::uint64_t, TcpReading>; // by cookie

/// What the sockets moved between two readings, in `received` and `sent`; each socket that moved
/// anything once. `ended` holds those that were closed in between, with their last counters; their
/// inode and user are those of `before`. Leaves out connections of the machine with itself: by
/// their addresses, or because both ends are here. Pure.
[[nodiscard]] std::vector<TcpReading>
tcpMovement(const TcpReadings& before, const TcpReadings& after, const TcpReadings& ended);

} // namespace tidewell::nettop
