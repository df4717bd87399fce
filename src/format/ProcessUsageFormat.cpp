#include "base/NumberText.h"
#include "processes/ProcessUsage.h"

namespace tidewell {

std::string ProcessUsage::formatBytes(std::int64_t bytesPerSec) {
  const auto rate = static_cast<double>(bytesPerSec);
  if (rate / 1e6 >= 1.0) {
    return fixedText(rate / 1e6, 1) + " MB/s";
  }
  return fixedText(rate / 1e3, 0) + " KB/s";
}

std::string ProcessUsage::formatBytesTotal(std::int64_t bytes) {
  const auto amount = static_cast<double>(bytes);
  if (amount / 1e9 >= 1.0) {
    return fixedText(amount / 1e9, 1) + " GB";
  }
  return fixedText(amount / 1e6, 0) + " MB";
}

} // namespace tidewell
