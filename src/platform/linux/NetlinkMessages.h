#pragma once

#include <cstddef>
#include <optional>
#include <span>

namespace tidewell {

/// Index of the interface that the route in a reply to RTM_GETROUTE leaves through; none when the
/// bytes hold no unicast route with an interface. Any bytes may be given. Pure.
[[nodiscard]] std::optional<int> parseRouteInterface(std::span<const std::byte> reply);

} // namespace tidewell
