#include "platform/linux/network/WifiName.h"

#include "base/DisplayText.h"
#include "platform/linux/network/NetlinkSocket.h"

#include <algorithm>
#include <utility>

#include <linux/genetlink.h>
#include <linux/nl80211.h>

namespace tidewell {
namespace {

constexpr std::size_t longestSsid = 32; // IEEE 802.11

/// Returns nullopt for a network that hides its name, which is then empty or all zeros.
std::optional<std::string> readSsid(NetlinkBytes bytes) {
  const bool isHidden =
      std::ranges::all_of(bytes, [](std::byte byte) { return byte == std::byte{}; });
  if (isHidden || bytes.size() > longestSsid) {
    return std::nullopt;
  }
  return std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

/// Finds the SSID in an access point's information elements: a number, a length and so many bytes
/// each.
std::optional<std::string> findSsid(NetlinkBytes elements) {
  constexpr std::size_t head = 2;
  while (elements.size() >= head) {
    const auto size = std::to_integer<std::size_t>(elements[1]);
    const auto rest = elements.subspan(head);
    if (size > rest.size()) {
      return std::nullopt;
    }
    if (elements[0] == std::byte{}) { // the SSID's number
      return readSsid(rest.first(size));
    }
    elements = rest.subspan(size);
  }
  return std::nullopt;
}

/// Returns nullopt unless the interface is on this network.
std::optional<std::string> readNetworkInUse(NetlinkBytes network) {
  std::optional<std::uint32_t> status;
  std::optional<std::string> ssid;
  forEachAttribute(network, [&](std::uint16_t type, NetlinkBytes value) {
    if (type == NL80211_BSS_STATUS) {
      status = netlinkValue<std::uint32_t>(value);
    } else if (type == NL80211_BSS_INFORMATION_ELEMENTS) {
      ssid = findSsid(value);
    }
  });
  return status == NL80211_BSS_STATUS_ASSOCIATED ? ssid : std::nullopt;
}

std::optional<WirelessInterface> readInterface(NetlinkBytes attributes) {
  WirelessInterface interface;
  std::uint32_t kind = NL80211_IFTYPE_UNSPECIFIED;
  forEachAttribute(attributes, [&](std::uint16_t type, NetlinkBytes value) {
    if (type == NL80211_ATTR_IFINDEX) {
      interface.index = netlinkValue<int>(value).value_or(0);
    } else if (type == NL80211_ATTR_IFTYPE) {
      kind = netlinkValue<std::uint32_t>(value).value_or(kind);
    } else if (type == NL80211_ATTR_SSID) {
      interface.ssid = readSsid(value);
    }
  });
  const bool isClient = kind == NL80211_IFTYPE_STATION || kind == NL80211_IFTYPE_P2P_CLIENT;
  return isClient && interface.index > 0 ? std::optional(std::move(interface)) : std::nullopt;
}

std::optional<std::uint16_t> askFamily(NetlinkSocket& socket) {
  NetlinkRequest request(GENL_ID_CTRL, 0, genlmsghdr{CTRL_CMD_GETFAMILY, 1, 0});
  // The kernel expects the name's zero byte.
  request.add(CTRL_ATTR_FAMILY_NAME, {NL80211_GENL_NAME, sizeof NL80211_GENL_NAME});
  return parseFamily(socket.ask(request));
}

std::optional<std::string> askNetworkInUse(NetlinkSocket& socket, std::uint16_t family, int index) {
  NetlinkRequest request(family, NLM_F_DUMP, genlmsghdr{NL80211_CMD_GET_SCAN, 0, 0});
  request.addValue(NL80211_ATTR_IFINDEX, static_cast<std::uint32_t>(index));
  return parseNetworkInUse(socket.ask(request), family);
}

std::vector<WirelessInterface> askInterfaces() {
  NetlinkSocket socket(NETLINK_GENERIC);
  const auto family = askFamily(socket);
  if (!family) {
    return {}; // a kernel without Wi-Fi
  }
  auto interfaces = parseWirelessInterfaces(
      socket.ask({*family, NLM_F_DUMP, genlmsghdr{NL80211_CMD_GET_INTERFACE, 0, 0}}), *family);
  // Old kernels and those from 5.19.2 to 6.0.2 report the name only with the scan results.
  for (WirelessInterface& interface : interfaces) {
    if (!interface.ssid) {
      interface.ssid = askNetworkInUse(socket, *family, interface.index);
    }
  }
  return interfaces;
}

} // namespace

std::optional<std::uint16_t> parseFamily(NetlinkBytes reply) {
  std::optional<std::uint16_t> family;
  forEachMessageOf<genlmsghdr>(
      reply, GENL_ID_CTRL, [&](const genlmsghdr& /*header*/, NetlinkBytes attributes) {
        forEachAttribute(attributes, [&](std::uint16_t type, NetlinkBytes value) {
          if (type == CTRL_ATTR_FAMILY_ID) {
            family = netlinkValue<std::uint16_t>(value);
          }
        });
        return !family;
      });
  return family;
}

std::vector<WirelessInterface> parseWirelessInterfaces(NetlinkBytes reply, std::uint16_t family) {
  std::vector<WirelessInterface> interfaces;
  forEachMessageOf<genlmsghdr>(
      reply, family, [&](const genlmsghdr& header, NetlinkBytes attributes) {
        auto interface =
            header.cmd == NL80211_CMD_NEW_INTERFACE ? readInterface(attributes) : std::nullopt;
        if (interface) {
          interfaces.push_back(std::move(*interface));
        }
        return true;
      });
  return interfaces;
}

std::optional<std::string> parseNetworkInUse(NetlinkBytes reply, std::uint16_t family) {
  std::optional<std::string> name;
  forEachMessageOf<genlmsghdr>(
      reply, family, [&](const genlmsghdr& header, NetlinkBytes attributes) {
        forEachAttribute(attributes, [&](std::uint16_t type, NetlinkBytes value) {
          if (header.cmd == NL80211_CMD_NEW_SCAN_RESULTS && type == NL80211_ATTR_BSS && !name) {
            name = readNetworkInUse(value);
          }
        });
        return !name;
      });
  return name;
}

std::optional<std::string> chooseWifiName(const std::vector<WirelessInterface>& interfaces,
                                          std::optional<int> primaryIndex) {
  auto chosen = std::ranges::find(interfaces, primaryIndex, &WirelessInterface::index);
  if (chosen == interfaces.end()) {
    chosen = std::ranges::find_if(interfaces,
                                  [](const auto& interface) { return interface.ssid.has_value(); });
  }
  if (chosen == interfaces.end() || !chosen->ssid) {
    return std::nullopt;
  }
  return displayText(*chosen->ssid);
}

std::optional<std::string> askWifiName(std::optional<int> primaryIndex) {
  return chooseWifiName(askInterfaces(), primaryIndex);
}

} // namespace tidewell
