// Any bytes as the output of the per-process statistics tool: what comes of it is sorted, cut and
// shared out rightly.

#include "processes/NettopOutput.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <string>
#include <string_view>

namespace {

void require(bool condition) {
  if (!condition) {
    std::abort();
  }
}

/// Sums that overflow end the program, as they are meant to; texts that can make one are left out.
bool mayOverflow(std::string_view text) {
  std::size_t digits = 0;
  for (const char character : text) {
    digits = character >= '0' && character <= '9' ? digits + 1 : 0;
    if (digits > 15) {
      return true;
    }
  }
  return false;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  if (mayOverflow(text)) {
    return 0;
  }
  const auto rows = tidewell::parseNettopOutput(text);
  require(rows.size() <= 10);
  require(
      std::ranges::is_sorted(rows, std::ranges::greater{}, &tidewell::ProcessUsage::totalBytes));
  for (const auto& row : rows) {
    require(!row.name.empty() && row.name.find_first_of(".,\n") == std::string::npos);
    require(row.name != "kernel_task" && row.name != "mDNSResponder");
    require(row.totalBytes == row.downloadBytesPerSec + row.uploadBytesPerSec);
    require(std::ranges::count(rows, row.name, &tidewell::ProcessUsage::name) == 1);
  }
  return 0;
}
