#include "helpers/nettop/Visibility.h"

#include <map>
#include <string>

#include <fcntl.h>
#include <unistd.h>

namespace tidewell::nettop {

bool areOthersHidden() {
  // With the effective identity, which is the caller's.
  return ::faccessat(AT_FDCWD, "/proc/1/comm", R_OK, AT_EACCESS) != 0;
}

std::string userRow(std::uint32_t user, const UserNames& names) {
  const auto found = names.find(user);
  return "user " + (found == names.end() ? std::to_string(user) : found->second);
}

std::vector<ProcessTraffic> foldOthers(const std::vector<ProcessTraffic>& rows,
                                       std::uint32_t caller, const UserNames& names) {
  std::vector<ProcessTraffic> visible;
  std::map<std::uint32_t, ProcessTraffic> others;
  for (const ProcessTraffic& row : rows) {
    if (row.user == caller || row.user == ProcessTraffic::nobody) {
      visible.push_back(row);
      continue;
    }
    ProcessTraffic& sum = others[row.user];
    sum.received += row.received;
    sum.sent += row.sent;
  }
  for (auto& [user, sum] : others) {
    visible.push_back({userRow(user, names), 0, user, sum.received, sum.sent});
  }
  return visible;
}

} // namespace tidewell::nettop
