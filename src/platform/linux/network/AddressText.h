#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>

#include <arpa/inet.h>

namespace tidewell {

/// Formats an address in network order. Returns nullopt unless it is an AF_INET address of 4 bytes
/// or an AF_INET6 address of 16.
[[nodiscard]] inline std::optional<std::string> addressText(int family, const void* address,
                                                            std::size_t size) {
  const bool isAddress = (family == AF_INET && size == 4) || (family == AF_INET6 && size == 16);
  std::array<char, INET6_ADDRSTRLEN> text{};
  if (!isAddress || ::inet_ntop(family, address, text.data(), text.size()) == nullptr) {
    return std::nullopt;
  }
  return text.data();
}

} // namespace tidewell
