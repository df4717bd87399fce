#include "platform/linux/network/LinkKind.h"

#include "base/TextPieces.h"
#include "platform/linux/files/FileReading.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

#include <net/if_arp.h>
#include <unistd.h>

namespace tidewell {
namespace {

constexpr std::array<std::string_view, 4> tunnelTypes = {"vxlan", "geneve", "gretap", "wireguard"};

// sysfs attributes are at most a page.
constexpr std::size_t attributeSize = 4096;

bool exists(const std::string& path) { return ::access(path.c_str(), F_OK) == 0; }

/// The value after "KEY=" at the start of a line.
std::string valueOf(std::string_view text, std::string_view key) {
  for (std::string_view line : splitAt(text, '\n')) {
    if (line.starts_with(key)) {
      return std::string(line.substr(key.size()));
    }
  }
  return {};
}

} // namespace

LinkKind linkKind(const LinkTraits& traits) {
  if (traits.isWireless || traits.deviceType == "wlan") {
    return LinkKind::wifi;
  }
  if (traits.deviceType == "wwan" || traits.hardwareType == ARPHRD_RAWIP ||
      traits.name.starts_with("wwan")) {
    return LinkKind::cellular;
  }
  const bool isTunnel =
      traits.isTun || std::ranges::find(tunnelTypes, traits.deviceType) != tunnelTypes.end();
  return traits.hardwareType == ARPHRD_ETHER && !isTunnel ? LinkKind::wiredEthernet
                                                          : LinkKind::other;
}

LinkTraits readLinkTraits(const std::string& sysfsRoot, const std::string& name) {
  const std::string directory = sysfsRoot + "/class/net/" + name + "/";
  LinkTraits traits;
  traits.name = name;
  const std::string type = readFile(directory + "type", attributeSize).contents;
  traits.hardwareType = parseInteger<int>(trim(type)).value_or(traits.hardwareType);
  traits.deviceType = valueOf(readFile(directory + "uevent", attributeSize).contents, "DEVTYPE=");
  traits.isWireless = exists(directory + "phy80211") || exists(directory + "wireless");
  traits.isTun = exists(directory + "tun_flags");
  return traits;
}

} // namespace tidewell
