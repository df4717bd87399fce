#include "platform/linux/network/NetlinkMessages.h"

#include "platform/linux/network/NetlinkAttributes.h"

#include <linux/rtnetlink.h>

namespace tidewell {

namespace {

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

std::optional<int> parseRouteInterface(std::span<const std::byte> reply) {
  return readFirst(reply, RTM_NEWROUTE, readRouteInterface);
}

std::optional<std::string> parseRouteSource(std::span<const std::byte> reply) {
  return readFirst(reply, RTM_NEWROUTE, readRouteSource);
}

} // namespace tidewell
