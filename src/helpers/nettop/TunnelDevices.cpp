#include "helpers/nettop/TunnelDevices.h"

#include "platform/linux/loop/FileDescriptor.h"

#include <algorithm>
#include <bit>
#include <iterator>
#include <memory>
#include <string_view>

#include <linux/ethtool.h>
#include <linux/sockios.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

namespace tidewell::nettop {

namespace {

struct FreeNames {
  void operator()(struct if_nameindex* names) const { ::if_freenameindex(names); }
};

std::string_view text(const auto& field) {
  return {std::begin(field), std::find(std::begin(field), std::end(field), '\0')};
}

bool isTunnel(const FileDescriptor& socket, std::string_view name) {
  ethtool_drvinfo driver{};
  driver.cmd = ETHTOOL_GDRVINFO;
  ifreq request{};
  name.copy(request.ifr_name, IFNAMSIZ - 1);
  request.ifr_data = std::bit_cast<char*>(&driver);
  return ::ioctl(socket.get(), SIOCETHTOOL, &request) == 0 && text(driver.driver) == "tun" &&
         text(driver.bus_info) == "tun";
}

} // namespace

std::vector<std::uint32_t> tunnelDevices() {
  const FileDescriptor socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
  const std::unique_ptr<struct if_nameindex, FreeNames> names(::if_nameindex());
  std::vector<std::uint32_t> devices;
  for (const auto* one = names.get(); one != nullptr && one->if_name != nullptr; ++one) {
    if (isTunnel(socket, one->if_name)) {
      devices.push_back(one->if_index);
    }
  }
  return devices;
}

} // namespace tidewell::nettop
