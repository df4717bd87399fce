#include "platform/linux/WifiMessages.h"

#include "platform/linux/NetlinkAttributes.h"

#include <algorithm>
#include <utility>

#include <linux/genetlink.h>
#include <linux/nl80211.h>

namespace tidewell {

namespace {

constexpr std::size_t longestSsid = 32; // IEEE 802.11

/// None for a network that hides its name: it is empty, or as many zeros as the name is long.
std::optional<std::string> readSsid(const nlattr& attribute) {
  std::string ssid(static_cast<const char*>(mnl_attr_get_payload(&attribute)),
                   mnl_attr_get_payload_len(&attribute));
  const bool isHidden = std::ranges::all_of(ssid, [](char byte) { return byte == '\0'; });
  return isHidden || ssid.size() > longestSsid ? std::nullopt : std::optional(std::move(ssid));
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
      interface.ssid = readSsid(attribute);
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

} // namespace tidewell
