#pragma once

#include <charconv>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string_view>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sched.h>
#include <sys/socket.h>

namespace tidewell::world {

/// Lets the calling process run before all others, so that measuring does not depend on what else
/// is running. Does nothing where that is forbidden.
inline void takePrecedence() {
  const sched_param priority{.sched_priority = 10};
  ::sched_setscheduler(0, SCHED_FIFO, &priority);
}

/// An address to send to.
struct Target {
  sockaddr_storage address{};
  socklen_t size = 0;
  std::int64_t ipHeader = 0; ///< In bytes, of every packet.

  template <class Address>
  Target(const Address& to, std::int64_t header) : size(sizeof to), ipHeader(header) {
    std::memcpy(&address, &to, sizeof to);
  }

  [[nodiscard]] const sockaddr* get() const { return reinterpret_cast<const sockaddr*>(&address); }
};

/// A number of at least zero.
inline std::optional<std::int64_t> parseCount(std::string_view text) {
  std::int64_t value = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  return error == std::errc{} && stop == end && value >= 0 ? std::optional(value) : std::nullopt;
}

/// A numeric address of either version of IP, and a port.
inline std::optional<Target> parseTarget(const char* host, std::string_view port) {
  const auto number = parseCount(port);
  if (!number || *number < 1 || *number > 65535) {
    return std::nullopt;
  }
  sockaddr_in v4{};
  sockaddr_in6 v6{};
  v4.sin_family = AF_INET;
  v6.sin6_family = AF_INET6;
  v4.sin_port = v6.sin6_port = htons(static_cast<std::uint16_t>(*number));
  if (::inet_pton(AF_INET, host, &v4.sin_addr) == 1) {
    return Target(v4, 20);
  }
  return ::inet_pton(AF_INET6, host, &v6.sin6_addr) == 1 ? std::optional(Target(v6, 40))
                                                         : std::nullopt;
}

} // namespace tidewell::world
