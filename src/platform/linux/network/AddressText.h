#pragma once

#include <algorithm>
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

/// Whether this is an IPv4 or IPv6 address. A link-local one may name its interface, such as
/// "fe80::1%wlan0". Any text may be given.
[[nodiscard]] inline bool isAddress(const std::string& text) {
  constexpr std::size_t longestAddress = 64; // with an interface
  const bool isPrintable =
      std::ranges::all_of(text, [](char character) { return character > ' ' && character < 0x7F; });
  if (!isPrintable || text.size() > longestAddress) {
    return false;
  }
  std::array<unsigned char, sizeof(in6_addr)> bytes{};
  return ::inet_pton(AF_INET, text.c_str(), bytes.data()) == 1 ||
         ::inet_pton(AF_INET6, text.substr(0, text.find('%')).c_str(), bytes.data()) == 1;
}

} // namespace tidewell
