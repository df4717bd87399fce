#pragma once

#include <cstdint>
#include <string>

namespace tidewell {

/// Text forms of rates in bytes per second. Decimal units; exact halves are rounded to the even
/// digit; independent of the locale.
struct SpeedFormatter {
  /// With unit: "0 KB/s", "12 KB/s", "1.2 MB/s", "120 MB/s", "1.2 GB/s". Negative rates take
  /// the last form.
  [[nodiscard]] static std::string format(std::int64_t bytesPerSec);

  /// Megabits per second as a bare number: "0.5", "9.88", "98.8", "100".
  [[nodiscard]] static std::string formatMbps(std::int64_t bytesPerSec);

  /// Short form with a unit letter: "0K", "12K", "1.2M", "1250M".
  [[nodiscard]] static std::string formatCompact(std::int64_t bytesPerSec);
};

} // namespace tidewell
