#pragma once

#include <array>
#include <cstdint>
#include <tuple>
#include <unordered_map>

namespace tidewell::nettop {

/// One end of a TCP connection.
struct TcpEnd {
  std::array<std::uint32_t, 4> address{}; // network order; an IPv4 address has the first alone
  std::uint16_t port = 0;                 // network order

  friend bool operator==(const TcpEnd&, const TcpEnd&) = default;
  friend bool operator<(const TcpEnd& left, const TcpEnd& right) {
    return std::tie(left.address, left.port) < std::tie(right.address, right.port);
  }
};

/// What the kernel tells of one TCP socket.
struct TcpReading {
  std::uint64_t cookie = 0; // the socket's lasting name
  std::uint32_t inode = 0;  // 0 once nobody holds it
  std::uint32_t user = 0;
  TcpEnd local;
  TcpEnd remote;
  bool isLoopback = false; // whether it connects the machine to itself, as far as addresses tell
  /// Since its beginning: payload, repetitions when sending included, and a header for each
  /// segment.
  std::uint64_t received = 0;
  std::uint64_t sent = 0;
};

using TcpReadings = std::unordered_map<std::uint64_t, TcpReading>; // by cookie

} // namespace tidewell::nettop
