// Any programs with any number of bytes, written by the helper and parsed by the resident. The text
// is short and valid. No byte is added, and none is lost except from the largest amounts.

#include "base/TextPieces.h"
#include "base/Utf8.h"
#include "helpers/nettop/NettopText.h"
#include "helpers/nettop/Rows.h"
#include "processes/NettopOutput.h"
#include "support/Require.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>

namespace {

using tidewell::fuzz::require;
using tidewell::nettop::ProcessTraffic;

constexpr std::uint64_t mostPerRow = std::uint64_t{1} << 53;

std::vector<ProcessTraffic> rowsOf(FuzzedDataProvider& input) {
  std::vector<ProcessTraffic> rows;
  while (input.remaining_bytes() > 0 && rows.size() < 600) {
    const auto process = input.ConsumeIntegralInRange<std::int32_t>(0, INT32_MAX);
    const auto user = input.ConsumeIntegral<std::uint8_t>();
    const bool isLarge = input.ConsumeBool();
    const auto bytes = [&] {
      return isLarge ? input.ConsumeIntegral<std::uint64_t>()
                     : std::uint64_t{input.ConsumeIntegral<std::uint16_t>()};
    };
    ProcessTraffic row{"", process, user, bytes(), bytes()};
    row.name = input.ConsumeRandomLengthString(100);
    rows.push_back(std::move(row));
  }
  return rows;
}

std::uint64_t column(std::string_view text, std::size_t number) {
  std::uint64_t sum = 0;
  for (const auto line : tidewell::splitAt(text.substr(text.find('\n') + 1), '\n')) {
    const auto pieces = tidewell::splitAt(line, ',');
    require(line.empty() || pieces.size() == 4);
    if (!line.empty()) {
      const auto value = tidewell::parseInteger<std::int64_t>(pieces[number]);
      require(value && *value >= 0 && static_cast<std::uint64_t>(*value) <= mostPerRow);
      sum += static_cast<std::uint64_t>(*value);
    }
  }
  return sum;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider input(data, size);
  const auto caller = input.ConsumeIntegral<std::uint8_t>();
  auto rows = rowsOf(input);
  std::uint64_t received = 0;
  std::uint64_t sent = 0;
  for (const ProcessTraffic& row : rows) {
    received += std::min(row.received, mostPerRow);
    sent += std::min(row.sent, mostPerRow);
  }
  const std::string text = tidewell::nettop::nettopText(rows);
  require(text.size() <= 32768 && tidewell::isUtf8(text));
  require(std::ranges::count(text, '\n') <= 257);
  require(column(text, 1) <= received && column(text, 2) <= sent);
  if (received < mostPerRow && sent < mostPerRow) {
    require(column(text, 1) == received && column(text, 2) == sent);
  }
  for (const auto& row : tidewell::parseNettopOutput(text)) {
    tidewell::fuzz::requireShowable(row.name);
    require(static_cast<std::uint64_t>(row.downloadBytesPerSec) <= received);
  }
  const auto folded = tidewell::nettop::foldOthers(rows, caller, {});
  require(folded.size() <= rows.size());
  return 0;
}
