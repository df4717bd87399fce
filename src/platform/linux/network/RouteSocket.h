#pragma once

#include "platform/linux/loop/FileDescriptor.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <span>
#include <string>

namespace tidewell {

/// How the kernel would reach an address.
struct Route {
  int interfaceIndex = 0;
  std::string source; // in network order; empty when the kernel does not tell
};

/// An interface as it is now.
struct InterfaceState {
  std::string name;
  bool isRunning = false; // up, ready to carry, and no loopback
};

/// Questions to the kernel's routing and link tables over one rtnetlink socket, which is opened on
/// first use and again after an error. Any thread. Every failure is an absent answer.
class RouteSocket {
public:
  /// Name of the interface with this index.
  [[nodiscard]] std::optional<std::string> interfaceName(int index);

  /// The state of the interface with this index.
  [[nodiscard]] std::optional<InterfaceState> interfaceState(int index);

  /// How the kernel would reach an address of this family (AF_INET or AF_INET6; 4 or 16 bytes in
  /// network order).
  [[nodiscard]] std::optional<Route> route(unsigned char family,
                                           std::span<const std::uint8_t> address);

private:
  using Reply = std::span<const std::byte>;

  bool open();
  [[nodiscard]] Reply ask(void* request);
  [[nodiscard]] Reply receive(std::uint32_t sequence);

  std::mutex m_mutex;
  FileDescriptor m_socket;
  std::uint32_t m_sequence = 0;
  // A link with every optional attribute stays below; netlink messages are 4-aligned.
  alignas(8) std::array<std::byte, 16384> m_buffer{};
};

} // namespace tidewell
