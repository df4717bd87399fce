// Any bytes as the machine's list of users. Each user's row is parsed as one row, whatever the
// name.

#include "helpers/nettop/NettopText.h"
#include "helpers/nettop/Rows.h"
#include "processes/NettopOutput.h"
#include "support/Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using tidewell::fuzz::require;
  const auto text = tidewell::fuzz::textOf(data, size);
  const auto names = tidewell::nettop::parseUserNames(text);
  for (const auto& [number, name] : names) {
    require(!name.empty() && name.find_first_of(":\n") == std::string::npos);
    require(text.find(name + ':') != std::string_view::npos);
    const auto rows = tidewell::parseNettopOutput(tidewell::nettop::nettopText(
        {{tidewell::nettop::userRow(number, names), 0, number, 7, 8}}));
    require(rows.size() == 1 && rows[0].downloadBytesPerSec == 7);
    tidewell::fuzz::requireShowable(rows[0].name);
  }
  return 0;
}
