#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>

namespace tidewell::nettop {

/// The IP bytes that interfaces have moved, without Ethernet headers.
struct DeviceTraffic {
  std::uint64_t received = 0;
  std::uint64_t sent = 0;
};

/// Reads the interfaces of the default routes from the text of /proc/net/route. Any text may be
/// given. Pure.
[[nodiscard]] std::set<std::string> defaultDevices(std::string_view ipv4Routes);

/// The same for the text of /proc/net/ipv6_route.
[[nodiscard]] std::set<std::string> defaultDevicesIpv6(std::string_view ipv6Routes);

/// The interfaces of the machine's default routes, without the loopback.
[[nodiscard]] std::set<std::string> devicesToTheWorld();

/// The sum of what these interfaces have moved until now.
[[nodiscard]] DeviceTraffic readDeviceTraffic(const std::set<std::string>& devices);

} // namespace tidewell::nettop
