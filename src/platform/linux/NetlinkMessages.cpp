#include "platform/linux/NetlinkMessages.h"

#include "platform/linux/NetlinkAttributes.h"

#include <linux/if_link.h>
#include <linux/rtnetlink.h>

namespace tidewell {

namespace {

/// The part of rtnl_link_stats64 that every kernel sends.
struct LinkBytes {
  std::uint64_t packetsIn;
  std::uint64_t packetsOut;
  std::uint64_t bytesIn;
  std::uint64_t bytesOut;
};

std::optional<LinkRecord> readLink(const nlmsghdr& message) {
  const auto header = readHeader<ifinfomsg>(message);
  if (!header) {
    return std::nullopt;
  }
  LinkRecord link;
  link.index = header->ifi_index;
  bool counted = false;
  forEachAttribute<ifinfomsg>(message, [&](const nlattr& attribute) {
    switch (mnl_attr_get_type(&attribute)) {
    case IFLA_IFNAME:
      link.name = attributeText(attribute);
      break;
    case IFLA_STATS64:
      if (const auto bytes = attributeValue<LinkBytes>(attribute)) {
        link.bytesIn = bytes->bytesIn;
        link.bytesOut = bytes->bytesOut;
        counted = true;
      }
      break;
    default:
      break;
    }
  });
  return counted ? std::optional(link) : std::nullopt;
}

std::optional<int> readRouteInterface(const nlmsghdr& message) {
  const auto header = readHeader<rtmsg>(message);
  if (!header || header->rtm_type != RTN_UNICAST) {
    return std::nullopt;
  }
  std::optional<int> index;
  forEachAttribute<rtmsg>(message, [&](const nlattr& attribute) {
    if (mnl_attr_get_type(&attribute) == RTA_OIF) {
      index = attributeValue<int>(attribute);
    }
  });
  return index;
}

std::optional<std::string> readRouteSource(const nlmsghdr& message) {
  if (!readHeader<rtmsg>(message)) {
    return std::nullopt;
  }
  std::optional<std::string> source;
  forEachAttribute<rtmsg>(message, [&](const nlattr& attribute) {
    if (mnl_attr_get_type(&attribute) == RTA_PREFSRC) {
      source.emplace(static_cast<const char*>(mnl_attr_get_payload(&attribute)),
                     mnl_attr_get_payload_len(&attribute));
    }
  });
  return source;
}

template <class Read>
auto readFirst(std::span<const std::byte> reply, std::uint16_t type, Read read)
    -> decltype(read(nlmsghdr{})) {
  decltype(read(nlmsghdr{})) result;
  forEachMessage(reply, [&](const nlmsghdr& message) {
    if (message.nlmsg_type != type) {
      return true;
    }
    result = read(message);
    return false;
  });
  return result;
}

} // namespace

std::optional<LinkRecord> parseLink(std::span<const std::byte> reply) {
  return readFirst(reply, RTM_NEWLINK, readLink);
}

std::optional<int> parseRouteInterface(std::span<const std::byte> reply) {
  return readFirst(reply, RTM_NEWROUTE, readRouteInterface);
}

std::optional<std::string> parseRouteSource(std::span<const std::byte> reply) {
  return readFirst(reply, RTM_NEWROUTE, readRouteSource);
}

} // namespace tidewell
