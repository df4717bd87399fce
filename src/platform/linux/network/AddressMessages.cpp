#include "platform/linux/network/AddressMessages.h"

#include "platform/linux/network/AddressText.h"
#include "platform/linux/network/NetlinkAttributes.h"

#include <linux/if_addr.h>
#include <linux/rtnetlink.h>

namespace tidewell {

namespace {

/// The interface's own address: on a point-to-point link IFA_ADDRESS is the other end's.
std::optional<std::string> ownAddress(const nlmsghdr& message) {
  std::optional<std::string> local;
  std::optional<std::string> either;
  forEachAttribute<ifaddrmsg>(message, [&](const nlattr& attribute) {
    const auto type = mnl_attr_get_type(&attribute);
    if (type == IFA_LOCAL || type == IFA_ADDRESS) {
      (type == IFA_LOCAL ? local : either) = addressText(AF_INET, mnl_attr_get_payload(&attribute),
                                                         mnl_attr_get_payload_len(&attribute));
    }
  });
  return local ? local : either;
}

} // namespace

std::optional<std::string> parseFirstIPv4(std::span<const std::byte> reply,
                                          unsigned interfaceIndex) {
  std::optional<std::string> address;
  forEachMessage(reply, [&](const nlmsghdr& message) {
    const auto header = readHeader<ifaddrmsg>(message);
    if (message.nlmsg_type == RTM_NEWADDR && header && header->ifa_family == AF_INET &&
        header->ifa_index == interfaceIndex) {
      address = ownAddress(message);
    }
    return !address;
  });
  return address;
}

} // namespace tidewell
