#include "platform/linux/network/LinuxInterfaceAddresses.h"

#include "platform/linux/network/AddressMessages.h"
#include "platform/linux/network/NetlinkQuestion.h"

#include <linux/rtnetlink.h>
#include <net/if.h>

namespace tidewell {

std::optional<std::string> LinuxInterfaceAddresses::firstIPv4(const std::string& interface) {
  const unsigned index = ::if_nametoindex(interface.c_str());
  if (index == 0) {
    return std::nullopt;
  }
  NetlinkQuestion question(RTM_GETADDR, NLM_F_DUMP);
  auto& header = question.addHeader<ifaddrmsg>();
  header.ifa_family = AF_INET;
  header.ifa_index = index;
  return parseFirstIPv4(question.ask(NETLINK_ROUTE), index);
}

} // namespace tidewell
