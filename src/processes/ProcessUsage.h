#pragma once

#include <cstdint>
#include <string>

namespace tidewell {

/// What one program has moved over the network.
struct ProcessUsage {
  /// Text of a program's rate in bytes per second: "12 KB/s" below a megabyte, else "2.5 MB/s".
  /// Decimal units, the same in every locale. Pure; any thread.
  [[nodiscard]] static std::string formatBytes(std::int64_t bytesPerSec);

  /// Text of an amount in bytes: "12 MB" below a gigabyte, else "2.3 GB". Pure; any thread.
  [[nodiscard]] static std::string formatBytesTotal(std::int64_t bytes);
};

} // namespace tidewell
