#include "helpers/nettop/DeviceTraffic.h"

#include "base/TextPieces.h"

#include <algorithm>
#include <limits>
#include <vector>

namespace tidewell::nettop {

namespace {

std::vector<std::string_view> words(std::string_view line) {
  auto pieces = splitAt(line, ' ');
  std::erase(pieces, std::string_view{});
  return pieces;
}

std::optional<std::uint64_t> counter(std::string_view text) {
  std::uint64_t value = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  return error == std::errc{} && stop == end ? std::optional(value) : std::nullopt;
}

bool isZero(std::string_view digits) {
  return !digits.empty() && digits.find_first_not_of('0') == std::string_view::npos;
}

void addDevice(std::string_view device, std::set<std::string>& devices) {
  if (device != "lo") {
    devices.emplace(device);
  }
}

} // namespace

std::optional<DeviceCounters> parseDeviceCounters(std::string_view table, std::string_view device) {
  // Eight columns of what was received, then eight of what was sent; bytes come first, then
  // packets.
  for (const std::string_view line : splitAt(table, '\n')) {
    const auto colon = line.find(':');
    if (colon == std::string_view::npos || trim(line.substr(0, colon), " ") != device) {
      continue;
    }
    const auto columns = words(line.substr(colon + 1));
    if (columns.size() < 10) {
      return std::nullopt;
    }
    const auto received = counter(columns[0]);
    const auto packetsReceived = counter(columns[1]);
    const auto sent = counter(columns[8]);
    const auto packetsSent = counter(columns[9]);
    if (!received || !packetsReceived || !sent || !packetsSent) {
      return std::nullopt;
    }
    return DeviceCounters{*received, *packetsReceived, *sent, *packetsSent};
  }
  return std::nullopt;
}

std::set<std::string> defaultDevices(std::string_view ipv4Routes) {
  std::set<std::string> devices;
  for (const std::string_view line : splitAt(ipv4Routes, '\n')) {
    auto columns = splitAt(line, '\t');
    std::ranges::for_each(columns, [](std::string_view& column) { column = trim(column, " "); });
    // Iface, Destination, Gateway, Flags, RefCnt, Use, Metric, Mask
    if (columns.size() >= 8 && isZero(columns[1]) && isZero(columns[7]) && !columns[0].empty()) {
      addDevice(columns[0], devices);
    }
  }
  return devices;
}

std::set<std::string> defaultDevicesIpv6(std::string_view ipv6Routes) {
  std::set<std::string> devices;
  for (const std::string_view line : splitAt(ipv6Routes, '\n')) {
    // Destination, its prefix length, source, its prefix length, next hop, metric, three more,
    // device
    const auto columns = words(line);
    if (columns.size() >= 10 && isZero(columns[0]) && isZero(columns[1])) {
      addDevice(columns[9], devices);
    }
  }
  return devices;
}

} // namespace tidewell::nettop
