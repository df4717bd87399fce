#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>

namespace tidewell {

/// Index of the interface that the route in a reply to RTM_GETROUTE leaves through; none when the
/// bytes hold no unicast route with an interface. Any bytes may be given. Pure.
[[nodiscard]] std::optional<int> parseRouteInterface(std::span<const std::byte> reply);

/// The address, as bytes in network order, that packets on that route leave with; none when the
/// bytes do not tell. Any bytes may be given. Pure.
[[nodiscard]] std::optional<std::string> parseRouteSource(std::span<const std::byte> reply);

} // namespace tidewell
