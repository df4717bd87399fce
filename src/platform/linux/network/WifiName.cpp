#include "platform/linux/network/WifiName.h"

#include "base/DisplayText.h"
#include "platform/linux/network/NetlinkQuestion.h"

#include <algorithm>

#include <libmnl/libmnl.h>
#include <linux/genetlink.h>
#include <linux/nl80211.h>

namespace tidewell {

namespace {

std::optional<std::uint16_t> askFamily() {
  NetlinkQuestion question(GENL_ID_CTRL, 0);
  auto& header = question.addHeader<genlmsghdr>();
  header.cmd = CTRL_CMD_GETFAMILY;
  header.version = 1;
  mnl_attr_put_strz(question.message(), CTRL_ATTR_FAMILY_NAME, NL80211_GENL_NAME);
  return parseFamily(question.ask(NETLINK_GENERIC));
}

std::optional<std::string> askNetworkInUse(std::uint16_t family, int index) {
  NetlinkQuestion question(family, NLM_F_DUMP);
  question.addHeader<genlmsghdr>().cmd = NL80211_CMD_GET_SCAN;
  mnl_attr_put_u32(question.message(), NL80211_ATTR_IFINDEX, static_cast<std::uint32_t>(index));
  return parseNetworkInUse(question.ask(NETLINK_GENERIC), family);
}

std::vector<WirelessInterface> askInterfaces() {
  const auto family = askFamily();
  if (!family) {
    return {}; // a kernel without Wi-Fi
  }
  NetlinkQuestion question(*family, NLM_F_DUMP);
  question.addHeader<genlmsghdr>().cmd = NL80211_CMD_GET_INTERFACE;
  auto interfaces = parseWirelessInterfaces(question.ask(NETLINK_GENERIC), *family);
  // Some kernels (old ones, and those from 5.19.2 to 6.0.2) tell the name there alone.
  for (WirelessInterface& interface : interfaces) {
    if (!interface.ssid) {
      interface.ssid = askNetworkInUse(*family, interface.index);
    }
  }
  return interfaces;
}

} // namespace

std::optional<std::string> chooseWifiName(const std::vector<WirelessInterface>& interfaces,
                                          std::optional<int> primaryIndex) {
  auto chosen = std::ranges::find_if(
      interfaces, [&](const auto& interface) { return interface.index == primaryIndex; });
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
