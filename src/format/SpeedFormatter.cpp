#include "format/SpeedFormatter.h"

#include "base/NumberText.h"
#include "processes/ProcessUsage.h"

namespace tidewell {
namespace {

constexpr double kilo = 1e3;
constexpr double mega = 1e6;
constexpr double giga = 1e9;

} // namespace

std::string SpeedFormatter::format(std::int64_t bytesPerSec) {
  const auto rate = static_cast<double>(bytesPerSec);
  if (bytesPerSec < 0 || bytesPerSec >= 1'000'000'000) {
    return fixedText(rate / giga, 1) + " GB/s";
  }
  if (bytesPerSec < 1'000) {
    return "0 KB/s";
  }
  if (bytesPerSec < 1'000'000) {
    return fixedText(rate / kilo, 0) + " KB/s";
  }
  return fixedText(rate / mega, bytesPerSec < 100'000'000 ? 1 : 0) + " MB/s";
}

std::string SpeedFormatter::formatMbps(std::int64_t bytesPerSec) {
  const double megabits = static_cast<double>(bytesPerSec) * 8.0 / mega;
  if (megabits >= 100.0) {
    return fixedText(megabits, 0);
  }
  if (megabits >= 10.0) {
    return fixedText(megabits, 1);
  }
  return fixedText(megabits, megabits >= 1.0 ? 2 : 1);
}

std::string SpeedFormatter::formatCompact(std::int64_t bytesPerSec) {
  const auto rate = static_cast<double>(bytesPerSec);
  if (bytesPerSec < 0 || bytesPerSec >= 100'000'000) {
    return fixedText(rate / mega, 0) + "M";
  }
  if (bytesPerSec < 1'000) {
    return "0K";
  }
  return bytesPerSec < 1'000'000 ? fixedText(rate / kilo, 0) + "K"
                                 : fixedText(rate / mega, 1) + "M";
}

std::string ProcessUsage::formatBytes(std::int64_t bytesPerSec) {
  const auto rate = static_cast<double>(bytesPerSec);
  if (rate / mega >= 1.0) {
    return fixedText(rate / mega, 1) + " MB/s";
  }
  return fixedText(rate / kilo, 0) + " KB/s";
}

std::string ProcessUsage::formatBytesTotal(std::int64_t bytes) {
  const auto amount = static_cast<double>(bytes);
  if (amount / giga >= 1.0) {
    return fixedText(amount / giga, 1) + " GB";
  }
  return fixedText(amount / mega, 0) + " MB";
}

} // namespace tidewell
