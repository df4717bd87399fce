#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tidewell {

/// A wireless interface that is or could be a client of a network.
struct WirelessInterface {
  int index = 0;
  /// Name of the network as the access point gave it: any bytes. None without a network, for one
  /// that hides its name, and from kernels that tell it only with the networks they have seen.
  std::optional<std::string> ssid;

  friend bool operator==(const WirelessInterface&, const WirelessInterface&) = default;
};

/// Number of a generic netlink family in a reply to CTRL_CMD_GETFAMILY; none when the bytes hold
/// none. Any bytes may be given. Pure.
[[nodiscard]] std::optional<std::uint16_t> parseFamily(std::span<const std::byte> reply);

/// The interfaces, in the kernel's order, in a reply to NL80211_CMD_GET_INTERFACE of the family of
/// this number. Access points, monitors and the like are left out. Any bytes may be given. Pure.
[[nodiscard]] std::vector<WirelessInterface>
parseWirelessInterfaces(std::span<const std::byte> reply, std::uint16_t family);

/// The name of the network that the interface is on, in a reply to NL80211_CMD_GET_SCAN of the
/// family of this number: of those it has seen the one that is marked so. Any bytes may be given.
/// Pure.
[[nodiscard]] std::optional<std::string> parseNetworkInUse(std::span<const std::byte> reply,
                                                           std::uint16_t family);

} // namespace tidewell
