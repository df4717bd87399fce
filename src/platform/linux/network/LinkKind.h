#pragma once

#include <string>

namespace tidewell {

/// Kind of a network link.
enum class LinkKind { wifi, wiredEthernet, cellular, other };

/// What sysfs tells of a network interface.
struct LinkTraits {
  std::string name;
  /// The hardware's kind, ARPHRD_..., which is -1 when unknown.
  int hardwareType = -1;
  /// The kernel's word for the device, such as "wlan", "wwan" or "bridge"; often empty.
  std::string deviceType;
  bool isWireless = false;
  /// Made by a program through /dev/net/tun, whatever it carries.
  bool isTun = false;
};

/// The kind of a link.
///
/// A tunnel is `other` even if it carries Ethernet frames: the traffic goes through it, and the
/// link below may be of any kind and change at any time. Bridges, bonds, VLANs and the pairs that
/// lead out of containers are wired. Pure.
[[nodiscard]] LinkKind linkKind(const LinkTraits& traits);

/// Reads what sysfs, mounted at `sysfsRoot`, tells of an interface; whatever is missing or odd
/// there keeps its initial value. Any thread.
[[nodiscard]] LinkTraits readLinkTraits(const std::string& sysfsRoot, const std::string& name);

} // namespace tidewell
