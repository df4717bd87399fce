#pragma once

#include <cstdint>
#include <vector>

namespace tidewell::nettop {

/// The indices of the interfaces of this network namespace behind which a program stands
/// (/dev/net/tun), those that carry Ethernet frames (tap) left out: they are virtual machines'.
[[nodiscard]] std::vector<std::uint32_t> tunnelDevices();

} // namespace tidewell::nettop
