#include "platform/linux/network/WifiMessages.h"

#include "platform/linux/network/NetlinkAttributes.h"

#include <algorithm>
#include <utility>

#include <linux/genetlink.h>
#include <linux/nl80211.h>

namespace tidewell {

namespace {

constexpr std::size_t longestSsid = 32; // IEEE 802.11

/// None for a network that hides its name: it is empty, or as many zeros as the name is long.
std::optional<std::string> readSsid(std::span<const std::byte> bytes) {
  const bool isHidden =
      std::ranges::all_of(bytes, [](std::byte byte) { return byte == std::byte{}; });
  if (isHidden || bytes.size() > longestSsid) {
    return std::nullopt;
  }
  return std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

/// From what an access point announces: elements of a number, a length and so many bytes.
std::optional<std::string> findSsid(std::span<const std::byte> elements) {
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

/// None unless the interface is on this network.
std::optional<std::string> readNetworkInUse(const nlattr& network) {
  std::optional<std::uint32_t> status;
  std::optional<std::string> ssid;
  forEachAttributeIn(attributeBytes(network), [&](const nlattr& attribute) {
    switch (mnl_attr_get_type(&attribute)) {
    case NL80211_BSS_STATUS:
      status = attributeValue<std::uint32_t>(attribute);
      break;
    case NL80211_BSS_INFORMATION_ELEMENTS:
      ssid = findSsid(attributeBytes(attribute));
      break;
    default:
      break;
    }
  });
  const bool isInUse = status == NL80211_BSS_STATUS_ASSOCIATED;
  return isInUse ? ssid : std::nullopt;
}

std::optional<WirelessInterface> readInterface(const nlmsghdr& message) {
  WirelessInterface interface;
  std::uint32_t type = NL80211_IFTYPE_UNSPECIFIED;
  forEachAttribute<genlmsghdr>(message, [&](const nlattr& attribute) {
    switch (mnl_attr_get_type(&attribute)) {
    case NL80211_ATTR_IFINDEX:
      interface.index = attributeValue<int>(attribute).value_or(0);
      break;
    case NL80211_ATTR_IFTYPE:
      type = attributeValue<std::uint32_t>(attribute).value_or(type);
      break;
    case NL80211_ATTR_SSID:
      interface.ssid = readSsid(attributeBytes(attribute));
      break;
    default:
      break;
    }
  });
  const bool isClient = type == NL80211_IFTYPE_STATION || type == NL80211_IFTYPE_P2P_CLIENT;
  return isClient && interface.index > 0 ? std::optional(std::move(interface)) : std::nullopt;
}

} // namespace

std::optional<std::uint16_t> parseFamily(std::span<const std::byte> reply) {
  std::optional<std::uint16_t> family;
  forEachMessage(reply, [&](const nlmsghdr& message) {
    if (message.nlmsg_type == GENL_ID_CTRL && readHeader<genlmsghdr>(message)) {
      forEachAttribute<genlmsghdr>(message, [&](const nlattr& attribute) {
        if (mnl_attr_get_type(&attribute) == CTRL_ATTR_FAMILY_ID) {
          family = attributeValue<std::uint16_t>(attribute);
        }
      });
    }
    return !family;
  });
  return family;
}

std::vector<WirelessInterface> parseWirelessInterfaces(std::span<const std::byte> reply,
                                                       std::uint16_t family) {
  std::vector<WirelessInterface> interfaces;
  forEachMessage(reply, [&](const nlmsghdr& message) {
    const auto header = readHeader<genlmsghdr>(message);
    if (message.nlmsg_type == family && header && header->cmd == NL80211_CMD_NEW_INTERFACE) {
      if (auto interface = readInterface(message)) {
        interfaces.push_back(std::move(*interface));
      }
    }
    return true;
  });
  return interfaces;
}

std::optional<std::string> parseNetworkInUse(std::span<const std::byte> reply,
                                             std::uint16_t family) {
  std::optional<std::string> name;
  forEachMessage(reply, [&](const nlmsghdr& message) {
    const auto header = readHeader<genlmsghdr>(message);
    if (message.nlmsg_type == family && header && header->cmd == NL80211_CMD_NEW_SCAN_RESULTS) {
      forEachAttribute<genlmsghdr>(message, [&](const nlattr& attribute) {
        if (mnl_attr_get_type(&attribute) == NL80211_ATTR_BSS && !name) {
          name = readNetworkInUse(attribute);
        }
      });
    }
    return !name;
  });
  return name;
}

} // namespace tidewell
