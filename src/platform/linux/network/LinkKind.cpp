#include "platform/linux/network/LinkKind.h"

#include "base/TextPieces.h"
#include "platform/linux/files/FileReading.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

#include <dirent.h>
#include <net/if_arp.h>
#include <unistd.h>

namespace tidewell {
namespace {

constexpr std::array<std::string_view, 5> otherTypes = {"vxlan", "geneve", "gretap", "wireguard",
                                                        "bluetooth"};

// Where the kernel lists mobile modems: control ports of their own, and the drivers of modems that
// look like serial adapters.
constexpr std::array<const char*, 5> modemDirectories = {
    "/class/wwan", "/class/usbmisc", "/bus/usb-serial/drivers/option1",
    "/bus/usb-serial/drivers/qcserial", "/bus/usb-serial/drivers/sierra"};
constexpr std::array<std::string_view, 3> modemPorts = {"wwan", "cdc-wdm", "ttyUSB"};

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

/// The names in a directory; none if it cannot be read.
std::vector<std::string> namesIn(const std::string& directory) {
  std::vector<std::string> names;
  const std::unique_ptr<DIR, int (*)(DIR*)> open(::opendir(directory.c_str()), &::closedir);
  while (const dirent* entry = open ? ::readdir(open.get()) : nullptr) {
    names.emplace_back(entry->d_name);
  }
  return names;
}

bool hasModem(const std::string& sysfsRoot) {
  return std::ranges::any_of(modemDirectories, [&](const char* directory) {
    return std::ranges::any_of(namesIn(sysfsRoot + directory), [](const std::string& name) {
      return std::ranges::any_of(modemPorts, [&](auto port) { return name.starts_with(port); });
    });
  });
}

/// Whether a dial-up line runs over Ethernet. The kernel's list begins with a line of titles.
bool hasDialUpOverEthernet(const std::string& procfsRoot) {
  const std::string list = readFile(procfsRoot + "/net/pppoe", attributeSize).contents;
  return std::ranges::count(list, '\n') > 1;
}

bool carriesModem(const std::string& sysfsRoot, const std::string& lower) {
  const std::string uevent =
      readFile(sysfsRoot + "/class/net/" + lower + "/uevent", attributeSize).contents;
  return valueOf(uevent, "DEVTYPE=") == "wwan";
}

bool isOverModem(const LinkTraits& traits, const std::string& sysfsRoot,
                 const std::string& procfsRoot) {
  if (traits.hardwareType == ARPHRD_PPP) {
    return hasModem(sysfsRoot) && !hasDialUpOverEthernet(procfsRoot);
  }
  constexpr std::string_view prefix = "lower_";
  return std::ranges::any_of(
      namesIn(sysfsRoot + "/class/net/" + traits.name), [&](const std::string& name) {
        return name.starts_with(prefix) && carriesModem(sysfsRoot, name.substr(prefix.size()));
      });
}

} // namespace

LinkKind linkKind(const LinkTraits& traits) {
  if (traits.isWireless || traits.deviceType == "wlan") {
    return LinkKind::wifi;
  }
  const bool isModem = traits.deviceType == "wwan" || traits.hardwareType == ARPHRD_RAWIP ||
                       traits.name.starts_with("wwan") || traits.isOverModem;
  if (isModem) {
    return LinkKind::cellular;
  }
  const bool isOther =
      traits.isTun || std::ranges::find(otherTypes, traits.deviceType) != otherTypes.end();
  return traits.hardwareType == ARPHRD_ETHER && !isOther ? LinkKind::wiredEthernet
                                                         : LinkKind::other;
}

LinkTraits readLinkTraits(const std::string& sysfsRoot, const std::string& name,
                          const std::string& procfsRoot) {
  const std::string directory = sysfsRoot + "/class/net/" + name + "/";
  LinkTraits traits;
  traits.name = name;
  const std::string type = readFile(directory + "type", attributeSize).contents;
  traits.hardwareType = parseInteger<int>(trim(type)).value_or(traits.hardwareType);
  traits.deviceType = valueOf(readFile(directory + "uevent", attributeSize).contents, "DEVTYPE=");
  traits.isWireless = exists(directory + "phy80211") || exists(directory + "wireless");
  traits.isTun = exists(directory + "tun_flags");
  traits.isOverModem = isOverModem(traits, sysfsRoot, procfsRoot);
  return traits;
}

} // namespace tidewell
