#include "helpers/nettop/DeviceTraffic.h"

#include "platform/linux/loop/FileDescriptor.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <net/if.h>
#include <net/if_arp.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

namespace tidewell::nettop {

namespace {

constexpr std::uint64_t ethernetHeader = 14;
constexpr std::size_t largestTable = 4 << 20;

/// The whole text of a file of /proc, whose size nobody knows before; empty when there is none.
std::string readTable(const char* path) {
  const FileDescriptor file(::open(path, O_RDONLY | O_CLOEXEC));
  std::string text;
  std::size_t size = 0;
  while (file.isOpen() && size < largestTable) {
    text.resize(size + 4096);
    const ssize_t count = ::read(file.get(), text.data() + size, text.size() - size);
    if (count == 0 || (count < 0 && errno != EINTR)) {
      break;
    }
    size += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
  }
  text.resize(size);
  return text;
}

bool isEthernet(const FileDescriptor& socket, const std::string& device) {
  ifreq request{};
  device.copy(request.ifr_name, IFNAMSIZ - 1);
  return ::ioctl(socket.get(), SIOCGIFHWADDR, &request) == 0 &&
         request.ifr_hwaddr.sa_family == ARPHRD_ETHER;
}

std::uint64_t withoutHeaders(std::uint64_t bytes, std::uint64_t packets, std::uint64_t header) {
  return bytes - std::min(bytes, packets * header);
}

} // namespace

DeviceTraffic readDeviceTraffic(const std::set<std::string>& devices) {
  const std::string table = readTable("/proc/thread-self/net/dev");
  const FileDescriptor socket(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
  DeviceTraffic traffic;
  for (const std::string& device : devices) {
    const auto counters = parseDeviceCounters(table, device);
    if (!counters) {
      continue;
    }
    const std::uint64_t header = isEthernet(socket, device) ? ethernetHeader : 0;
    traffic.received += withoutHeaders(counters->received, counters->packetsReceived, header);
    traffic.sent += withoutHeaders(counters->sent, counters->packetsSent, header);
  }
  return traffic;
}

std::set<std::string> devicesToTheWorld() {
  auto devices = defaultDevices(readTable("/proc/thread-self/net/route"));
  devices.merge(defaultDevicesIpv6(readTable("/proc/thread-self/net/ipv6_route")));
  return devices;
}

} // namespace tidewell::nettop
