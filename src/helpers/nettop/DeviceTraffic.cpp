#include "helpers/nettop/DeviceTraffic.h"

#include "base/TextPieces.h"
#include "platform/linux/loop/FileDescriptor.h"
#include "platform/linux/network/DeviceTable.h"

#include <algorithm>
#include <cerrno>
#include <vector>

#include <fcntl.h>
#include <net/if.h>
#include <net/if_arp.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

namespace tidewell::nettop {
namespace {

constexpr std::uint64_t ethernetHeader = 14;
constexpr std::size_t largestTable = 4 << 20;

/// Reads a file of /proc, whose size is not known before. Returns an empty text on failure.
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

/// Calls `visit` with the words of each line.
template <class Visit> void forEachLine(std::string_view table, char separator, Visit&& visit) {
  for (const std::string_view line : splitAt(table, '\n')) {
    auto words = splitAt(line, separator);
    std::ranges::for_each(words, [](std::string_view& word) { word = trim(word); });
    std::erase(words, std::string_view{});
    visit(words);
  }
}

bool isZero(std::string_view digits) {
  return !digits.empty() && digits.find_first_not_of('0') == std::string_view::npos;
}

void addDevice(std::string_view device, std::set<std::string>& devices) {
  if (device != "lo") {
    devices.emplace(device);
  }
}

std::uint64_t headerOf(const std::string& device) {
  const FileDescriptor socket(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
  ifreq request{};
  device.copy(request.ifr_name, IFNAMSIZ - 1);
  const bool isEthernet = ::ioctl(socket.get(), SIOCGIFHWADDR, &request) == 0 &&
                          request.ifr_hwaddr.sa_family == ARPHRD_ETHER;
  return isEthernet ? ethernetHeader : 0;
}

std::uint64_t without(std::uint64_t bytes, std::uint64_t headers) {
  return bytes - std::min(bytes, headers);
}

} // namespace

std::set<std::string> defaultDevices(std::string_view ipv4Routes) {
  std::set<std::string> devices;
  forEachLine(ipv4Routes, '\t', [&devices](const std::vector<std::string_view>& columns) {
    // Iface, Destination, Gateway, Flags, RefCnt, Use, Metric, Mask
    if (columns.size() >= 8 && isZero(columns[1]) && isZero(columns[7])) {
      addDevice(columns[0], devices);
    }
  });
  return devices;
}

std::set<std::string> defaultDevicesIpv6(std::string_view ipv6Routes) {
  std::set<std::string> devices;
  forEachLine(ipv6Routes, ' ', [&devices](const std::vector<std::string_view>& columns) {
    // Destination, its prefix length, source, its prefix length, next hop, metric, three more,
    // device
    if (columns.size() >= 10 && isZero(columns[0]) && isZero(columns[1])) {
      addDevice(columns[9], devices);
    }
  });
  return devices;
}

std::set<std::string> devicesToTheWorld() {
  auto devices = defaultDevices(readTable("/proc/thread-self/net/route"));
  devices.merge(defaultDevicesIpv6(readTable("/proc/thread-self/net/ipv6_route")));
  return devices;
}

DeviceTraffic readDeviceTraffic(const std::set<std::string>& devices) {
  DeviceTable table;
  DeviceTraffic traffic;
  for (const std::string& device : devices) {
    if (const auto link = table.device(device)) {
      const std::uint64_t header = headerOf(device);
      traffic.received += without(link->bytesIn, link->packetsIn * header);
      traffic.sent += without(link->bytesOut, link->packetsOut * header);
    }
  }
  return traffic;
}

} // namespace tidewell::nettop
