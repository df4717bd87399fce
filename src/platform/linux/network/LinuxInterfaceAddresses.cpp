#include "platform/linux/network/LinuxInterfaceAddresses.h"

#include "platform/linux/network/AddressText.h"
#include "platform/linux/network/NetlinkSocket.h"

#include <linux/rtnetlink.h>
#include <net/if.h>

namespace tidewell {
namespace {

/// The interface's own address. On a point-to-point link IFA_ADDRESS is the peer's.
std::optional<std::string> ownAddress(NetlinkBytes attributes) {
  std::optional<std::string> local;
  std::optional<std::string> either;
  forEachAttribute(attributes, [&](std::uint16_t type, NetlinkBytes value) {
    if (type == IFA_LOCAL || type == IFA_ADDRESS) {
      (type == IFA_LOCAL ? local : either) = addressText(AF_INET, value.data(), value.size());
    }
  });
  return local ? local : either;
}

} // namespace

std::optional<std::string> parseFirstIPv4(NetlinkBytes reply, unsigned interfaceIndex) {
  std::optional<std::string> address;
  forEachMessageOf<ifaddrmsg>(
      reply, RTM_NEWADDR, [&](const ifaddrmsg& header, NetlinkBytes attributes) {
        if (header.ifa_family == AF_INET && header.ifa_index == interfaceIndex) {
          address = ownAddress(attributes);
        }
        return !address;
      });
  return address;
}

std::optional<std::string> LinuxInterfaceAddresses::firstIPv4(const std::string& interface) {
  const unsigned index = ::if_nametoindex(interface.c_str());
  if (index == 0) {
    return std::nullopt;
  }
  ifaddrmsg header{};
  header.ifa_family = AF_INET;
  header.ifa_index = index;
  NetlinkSocket socket(NETLINK_ROUTE);
  return parseFirstIPv4(socket.ask({RTM_GETADDR, NLM_F_DUMP, header}), index);
}

} // namespace tidewell
