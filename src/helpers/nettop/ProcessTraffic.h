#pragma once

#include <cstdint>
#include <string>

namespace tidewell::nettop {

/// What one process, or a group of them, moved in the second: IP bytes, loopback left out.
struct ProcessTraffic {
  /// As the kernel knows it: any bytes.
  std::string name;
  /// 0 where it is no single process.
  std::int32_t process = 0;
  /// Whose process it is; none where nobody's in particular.
  std::uint32_t user = nobody;
  std::uint64_t received = 0;
  std::uint64_t sent = 0;

  static constexpr std::uint32_t nobody = 0xFFFFFFFF;

  friend bool operator==(const ProcessTraffic&, const ProcessTraffic&) = default;
};

} // namespace tidewell::nettop
