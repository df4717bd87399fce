#include "platform/linux/NetlinkMessages.h"

#include "platform/linux/NetlinkAttributes.h"

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

} // namespace

std::optional<int> parseRouteInterface(std::span<const std::byte> reply) {
  std::optional<int> index;
  forEachMessage(reply, [&](const nlmsghdr& message) {
    if (message.nlmsg_type != RTM_NEWROUTE) {
      return true;
    }
    index = readRouteInterface(message);
    return false;
  });
  return index;
}

} // namespace tidewell
