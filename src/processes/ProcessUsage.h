#pragma once

#include <cstdint>
#include <string>

namespace tidewell {

/// What one program has moved over the network.
struct ProcessUsage {
  /// Process identifier of the program's first process; 0 when it is not known.
  std::int32_t id = 0;
  std::string name;
  /// Bytes in the tool's sample of one second, all processes of the name together.
  std::int64_t downloadBytesPerSec = 0;
  std::int64_t uploadBytesPerSec = 0;
  std::int64_t totalBytes = 0;
  /// Share of all programs' bytes, from 0.0 to 1.0.
  double usagePercent = 0.0;

  friend bool operator==(const ProcessUsage&, const ProcessUsage&) = default;

  /// Text of a program's rate in bytes per second: "12 KB/s" below a megabyte, else "2.5 MB/s".
  /// Decimal units, the same in every locale. Pure; any thread.
  [[nodiscard]] static std::string formatBytes(std::int64_t bytesPerSec);

  /// Text of an amount in bytes: "12 MB" below a gigabyte, else "2.3 GB". Pure; any thread.
  [[nodiscard]] static std::string formatBytesTotal(std::int64_t bytes);
};

} // namespace tidewell
