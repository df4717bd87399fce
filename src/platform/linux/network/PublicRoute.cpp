#include "platform/linux/network/PublicRoute.h"

#include "platform/linux/network/RouteSocket.h"

#include <array>
#include <cstdint>
#include <span>
#include <utility>

#include <sys/socket.h>

namespace tidewell {

namespace {

// Cloudflare's public resolver: never inside a private network.
constexpr std::array<std::uint8_t, 4> publicAddress4 = {1, 1, 1, 1};
constexpr std::array<std::uint8_t, 16> publicAddress6 = {
    0x26, 0x06, 0x47, 0x00, 0x47, 0x00, 0, 0, 0, 0, 0, 0, 0, 0, 0x11, 0x11};

std::optional<PublicRoute> routeOver(RouteSocket& socket, unsigned char family,
                                     std::span<const std::uint8_t> address) {
  auto route = socket.route(family, address);
  if (!route) {
    return std::nullopt;
  }
  auto state = socket.interfaceState(route->interfaceIndex);
  if (!state) {
    return std::nullopt;
  }
  return PublicRoute{route->interfaceIndex, std::move(state->name),
                     family == AF_INET ? std::move(route->source) : std::string(),
                     state->isRunning};
}

} // namespace

std::optional<PublicRoute> publicRoute(RouteSocket& socket) {
  auto first = routeOver(socket, AF_INET, publicAddress4);
  if (first && first->isRunning) {
    return first;
  }
  auto second = routeOver(socket, AF_INET6, publicAddress6);
  const bool secondIsBetter = second && (second->isRunning || !first);
  return secondIsBetter ? second : first;
}

} // namespace tidewell
