#pragma once

#include <string>

namespace tidewell {

/// Kind of a network link.
enum class LinkKind { wifi, wiredEthernet, cellular, other };

/// What sysfs reports about a network interface.
struct LinkTraits {
  std::string name;
  /// The hardware's type (ARPHRD_...); -1 if unknown.
  int hardwareType = -1;
  /// The kernel's device type, such as "wlan", "wwan" or "bridge"; often empty.
  std::string deviceType;
  bool isWireless = false;
  /// Made by a program through /dev/net/tun.
  bool isTun = false;
  /// One of the lines that a mobile modem's interface carries.
  bool isOverModem = false;
};

/// The kind of a link.
///
/// A tunnel is `other` even if it carries Ethernet frames, because the link below it may be of any
/// kind and may change at any time. Bridges, bonds, VLANs and the pairs that lead out of containers
/// are wired. Tethering over Bluetooth is `other`. Pure.
[[nodiscard]] LinkKind linkKind(const LinkTraits& traits);

/// Reads the traits of an interface from the sysfs mounted at `sysfsRoot`. Missing or invalid
/// values keep their defaults. A dial-up line counts as a mobile modem's if the machine has one and
/// no dial-up line runs over Ethernet, which `procfsRoot` shows: the kernel does not connect the
/// two.
[[nodiscard]] LinkTraits readLinkTraits(const std::string& sysfsRoot, const std::string& name,
                                        const std::string& procfsRoot = "/proc");

} // namespace tidewell
