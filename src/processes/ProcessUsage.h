#pragma once

#include <cstdint>
#include <string>

namespace tidewell {

/// The network traffic of one program.
struct ProcessUsage {
  /// Process identifier of the program's first process; 0 if unknown.
  std::int32_t id = 0;
  std::string name;
  /// Bytes in the tool's one-second sample, summed over all processes of this name.
  std::int64_t downloadBytesPerSec = 0;
  std::int64_t uploadBytesPerSec = 0;
  std::int64_t totalBytes = 0;
  /// Fraction of all programs' bytes, 0.0 to 1.0.
  double usagePercent = 0.0;

  friend bool operator==(const ProcessUsage&, const ProcessUsage&) = default;

  /// A rate in bytes per second as text: "12 KB/s" below a megabyte, else "2.5 MB/s". Decimal units
  /// in every locale. Pure.
  [[nodiscard]] static std::string formatBytes(std::int64_t bytesPerSec);

  /// An amount of bytes as text: "12 MB" below a gigabyte, else "2.3 GB". Pure.
  [[nodiscard]] static std::string formatBytesTotal(std::int64_t bytes);
};

} // namespace tidewell
