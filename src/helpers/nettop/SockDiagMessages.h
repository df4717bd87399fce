#pragma once

#include "helpers/nettop/TcpReading.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace tidewell::nettop {

/// What a datagram of a sock_diag socket held.
struct SockDiagMessages {
  enum class End {
    none,   // more of the answer follows
    done,   // the answer is complete
    failed, // the kernel refused
  };

  std::vector<TcpReading> readings;
  End end = End::none;
};

/// Reads a datagram, an answer to a question for TCP sockets or the news of their ends. Any bytes
/// may be given; what is cut short or of another kind is skipped. Pure.
[[nodiscard]] SockDiagMessages parseSockDiag(std::span<const std::byte> bytes);

/// The question for all TCP sockets of an address family (AF_INET or AF_INET6) that can have moved
/// something, with their counters. Pure.
[[nodiscard]] std::vector<std::byte> tcpQuestion(std::uint8_t family);

} // namespace tidewell::nettop
