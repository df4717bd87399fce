#pragma once

#include "platform/linux/network/NetlinkMessages.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tidewell {

/// A wireless interface that is or could be a client of a network.
struct WirelessInterface {
  int index = 0;
  /// The network's name as the access point sent it: any bytes. Absent without a network, if the
  /// network hides its name, and on kernels that only report it with scan results.
  std::optional<std::string> ssid;

  friend bool operator==(const WirelessInterface&, const WirelessInterface&) = default;
};

/// Reads the number of a generic netlink family from a reply to CTRL_CMD_GETFAMILY. Any bytes may
/// be given. Pure.
[[nodiscard]] std::optional<std::uint16_t> parseFamily(NetlinkBytes reply);

/// Reads the client interfaces, in the kernel's order, from a reply to NL80211_CMD_GET_INTERFACE of
/// the family with this number. Leaves out access points, monitors and the like. Any bytes may be
/// given. Pure.
[[nodiscard]] std::vector<WirelessInterface> parseWirelessInterfaces(NetlinkBytes reply,
                                                                     std::uint16_t family);

/// Reads the name of the network that the interface is on from a reply to NL80211_CMD_GET_SCAN of
/// the family with this number. Any bytes may be given. Pure.
[[nodiscard]] std::optional<std::string> parseNetworkInUse(NetlinkBytes reply,
                                                           std::uint16_t family);

/// The name, fit for display, of the network of the wireless interface with this index. If no
/// wireless interface has this index (the traffic goes through a tunnel, say), of the first one
/// that is on a network. Pure.
[[nodiscard]] std::optional<std::string>
chooseWifiName(const std::vector<WirelessInterface>& interfaces, std::optional<int> primaryIndex);

/// The same for the kernel's interfaces. May wait some tens of milliseconds while an interface is
/// being made.
[[nodiscard]] std::optional<std::string> askWifiName(std::optional<int> primaryIndex);

} // namespace tidewell
