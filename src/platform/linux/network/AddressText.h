#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

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
[[nodiscard]] inline bool isAddress(std::string_view text) {
  constexpr std::size_t longestAddress = 64; // with an interface
  const bool isPrintable =
      std::ranges::all_of(text, [](char character) { return character > ' ' && character < 0x7F; });
  if (text.size() > longestAddress || !isPrintable) {
    return false;
  }
  const std::string whole(text);
  std::array<unsigned char, sizeof(in6_addr)> bytes{};
  return ::inet_pton(AF_INET, whole.c_str(), bytes.data()) == 1 ||
         ::inet_pton(AF_INET6, whole.substr(0, whole.find('%')).c_str(), bytes.data()) == 1;
}

} // namespace tidewell
