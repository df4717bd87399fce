#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace tidewell::nettop {

/// What an interface has moved since it was made, in bytes and packets.
struct DeviceCounters {
  std::uint64_t received = 0;
  std::uint64_t packetsReceived = 0;
  std::uint64_t sent = 0;
  std::uint64_t packetsSent = 0;

  friend bool operator==(const DeviceCounters&, const DeviceCounters&) = default;
};

/// The counters of the interface of this name in a text as /proc/net/dev holds it; none when it is
/// not there whole. Any text may be given. Pure.
[[nodiscard]] std::optional<DeviceCounters> parseDeviceCounters(std::string_view table,
                                                                std::string_view device);

/// The interfaces of the default routes in a text as /proc/net/route holds it. Any text may be
/// given. Pure.
[[nodiscard]] std::set<std::string> defaultDevices(std::string_view ipv4Routes);

/// The same for a text as /proc/net/ipv6_route holds it.
[[nodiscard]] std::set<std::string> defaultDevicesIpv6(std::string_view ipv6Routes);

/// What the interfaces of the default routes have moved, as IP bytes: the headers of Ethernet are
/// left out.
struct DeviceTraffic {
  std::uint64_t received = 0;
  std::uint64_t sent = 0;
};

/// Reads it now, for these interfaces.
[[nodiscard]] DeviceTraffic readDeviceTraffic(const std::set<std::string>& devices);

/// The interfaces that the machine's default routes leave through, the loopback left out.
[[nodiscard]] std::set<std::string> devicesToTheWorld();

} // namespace tidewell::nettop
