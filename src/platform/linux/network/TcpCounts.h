#pragma once

#include <cstdint>

namespace tidewell {

/// What a TCP connection has moved, as its own end of the kernel counts it: what has come, and what
/// the other end has said to have. Bytes that only went into a buffer are in neither.
struct TcpCounts {
  std::uint64_t received = 0;
  std::uint64_t acknowledged = 0;
};

/// The counts of an open connection; zeros when the descriptor is none.
[[nodiscard]] TcpCounts tcpCounts(int socket);

/// Keeps what waits in the socket, not sent yet, below this many bytes: whatever waits there delays
/// what is written next.
void limitUnsent(int socket, std::uint32_t bytes);

} // namespace tidewell
