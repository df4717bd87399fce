// Any bytes as a program's name, as the target of a descriptor's link, and as the kernel's record
// of a process.

#include "base/DisplayText.h"
#include "helpers/nettop/ProgramName.h"
#include "helpers/nettop/SocketHolders.h"
#include "helpers/nettop/TrafficTable.h"
#include "support/Require.h"

#include <algorithm>
#include <cstring>
#include <string>

using tidewell::fuzz::require;

namespace {

void checkShown(std::string_view text) {
  const std::string shown = tidewell::displayText(text);
  tidewell::fuzz::requireShowable(shown);
  require(shown.size() <= 3 * text.size() && shown.empty() == text.empty());
  require(tidewell::displayText(shown) == shown);

  const std::string name = tidewell::nettop::printableName(text);
  tidewell::fuzz::requireShowable(name);
  require(!name.empty() && name.find_first_of(".,()\n") == std::string::npos);
  require(name != "kernel_task" && name != "mDNSResponder");
  require(tidewell::nettop::printableName(name) == name);
}

void checkRecord(const std::uint8_t* data, std::size_t size) {
  using namespace tidewell::nettop;
  ProcessRecord record{};
  std::memcpy(&record, data, std::min(size, sizeof record));
  SocketTraffic socket{};
  std::memcpy(&socket, data, std::min(size, sizeof socket));
  TrafficTable table;
  table.add(socket);
  for (const std::uint32_t owner : table.owners()) {
    table.name(owner, record);
  }
  for (const ProcessTraffic& row : table.rows()) {
    require(!row.name.empty() && row.name.size() <= longestName && row.process >= 0);
    require(row.received <= socket.received && row.sent <= socket.sent);
  }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto text = tidewell::fuzz::textOf(data, size);
  checkShown(text);
  checkRecord(data, size);
  require(tidewell::nettop::executableName(text).find('/') == std::string::npos);
  if (const auto inode = tidewell::nettop::socketInode(text)) {
    require(text.find(std::to_string(*inode)) != std::string_view::npos);
  }
  return 0;
}
