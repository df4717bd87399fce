#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace tidewell {

/// What the kernel tells of one network interface. Counters are unsigned and 64 bits wide.
struct LinkRecord {
  int index = 0;
  std::string name;
  std::uint64_t bytesIn = 0;
  std::uint64_t bytesOut = 0;
};

/// The first link of a reply to RTM_GETLINK; none when the bytes hold no complete link with
/// statistics. Any bytes may be given. Pure.
[[nodiscard]] std::optional<LinkRecord> parseLink(std::span<const std::byte> reply);

/// Index of the interface that the route in a reply to RTM_GETROUTE leaves through; none when the
/// bytes hold no unicast route with an interface. Any bytes may be given. Pure.
[[nodiscard]] std::optional<int> parseRouteInterface(std::span<const std::byte> reply);

/// The address, as bytes in network order, that packets on that route leave with; none when the
/// bytes do not tell. Any bytes may be given. Pure.
[[nodiscard]] std::optional<std::string> parseRouteSource(std::span<const std::byte> reply);

} // namespace tidewell
