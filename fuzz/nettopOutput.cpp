// Any bytes as the output of the per-process traffic tool. The list is sorted and limited, and its
// shares are correct.

#include "processes/NettopOutput.h"
#include "support/Require.h"

#include <algorithm>
#include <functional>
#include <string>
#include <string_view>

using tidewell::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  if (tidewell::fuzz::maySumOverflow(text)) {
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
