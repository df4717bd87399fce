#include "format/SpeedFormatter.h"

#include "base/NumberText.h"

namespace tidewell {

namespace {

constexpr double kilo = 1e3;
constexpr double mega = 1e6;
constexpr double giga = 1e9;

} // namespace

std::string SpeedFormatter::format(std::int64_t bytesPerSec) {
  const auto rate = static_cast<double>(bytesPerSec);
  if (bytesPerSec >= 0 && bytesPerSec < 1'000) {
    return "0 KB/s";
  }
  if (bytesPerSec >= 1'000 && bytesPerSec < 1'000'000) {
    return fixedText(rate / kilo, 0) + " KB/s";
  }
  if (bytesPerSec >= 1'000'000 && bytesPerSec < 100'000'000) {
    return fixedText(rate / mega, 1) + " MB/s";
  }
  if (bytesPerSec >= 100'000'000 && bytesPerSec < 1'000'000'000) {
    return fixedText(rate / mega, 0) + " MB/s";
  }
  return fixedText(rate / giga, 1) + " GB/s";
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
  if (bytesPerSec >= 0 && bytesPerSec < 1'000) {
    return "0K";
  }
  if (bytesPerSec >= 1'000 && bytesPerSec < 1'000'000) {
    return fixedText(rate / kilo, 0) + "K";
  }
  if (bytesPerSec >= 1'000'000 && bytesPerSec < 100'000'000) {
    return fixedText(rate / mega, 1) + "M";
  }
  return fixedText(rate / mega, 0) + "M";
}

} // namespace tidewell
