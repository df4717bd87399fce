#include "helpers/nettop/Rows.h"

#include "base/TextPieces.h"
#include "platform/linux/files/FileReading.h"

#include <algorithm>
#include <limits>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace tidewell::nettop {
namespace {

constexpr std::size_t largestUserFile = 4 << 20;

ProcessTraffic rowOf(const TcpReading& socket, const Holders& holders, const UserNames& users) {
  const auto found = holders.find(socket.inode);
  if (found != holders.end()) {
    return {found->second.name, found->second.process, found->second.user};
  }
  // A socket that was opened and closed within the second has lost its user with its holder.
  if (socket.inode == 0) {
    return {"unknown"};
  }
  return {userRow(socket.user, users), 0, socket.user};
}

std::uint64_t beyond(std::uint64_t all, std::uint64_t part) { return all - std::min(all, part); }

} // namespace

UserNames parseUserNames(std::string_view text) {
  UserNames names;
  for (const std::string_view line : splitAt(text, '\n')) {
    const auto fields = splitAt(line, ':');
    if (fields.size() < 3 || fields[0].empty()) {
      continue;
    }
    const auto number = parseInteger<std::int64_t>(fields[2]);
    if (number && *number >= 0 && *number <= std::numeric_limits<std::uint32_t>::max()) {
      names.try_emplace(static_cast<std::uint32_t>(*number), fields[0]);
    }
  }
  return names;
}

UserNames localUserNames() {
  return parseUserNames(readFile("/etc/passwd", largestUserFile).contents);
}

std::string userRow(std::uint32_t user, const UserNames& names) {
  const auto found = names.find(user);
  return "user " + (found == names.end() ? std::to_string(user) : found->second);
}

std::vector<ProcessTraffic> diagRows(const std::vector<TcpReading>& movement,
                                     const Holders& holders, const UserNames& users,
                                     const DeviceTraffic& all) {
  // By process and user; the process is 0 for a user whose processes are unknown.
  std::map<std::pair<std::int32_t, std::uint32_t>, ProcessTraffic> parties;
  DeviceTraffic tcp;
  for (const TcpReading& socket : movement) {
    const ProcessTraffic fresh = rowOf(socket, holders, users);
    ProcessTraffic& row = parties.try_emplace({fresh.process, fresh.user}, fresh).first->second;
    row.received += socket.received;
    row.sent += socket.sent;
    tcp.received += socket.received;
    tcp.sent += socket.sent;
  }
  std::vector<ProcessTraffic> rows;
  rows.reserve(parties.size() + 1);
  for (const auto& [party, row] : parties) {
    rows.push_back(row);
  }
  rows.push_back({"other traffic", 0, ProcessTraffic::nobody, beyond(all.received, tcp.received),
                  beyond(all.sent, tcp.sent)});
  return rows;
}

bool areOthersHidden() {
  // With the effective identity, which is the caller's.
  return ::faccessat(AT_FDCWD, "/proc/1/comm", R_OK, AT_EACCESS) != 0;
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
  for (const auto& [user, sum] : others) {
    visible.push_back({userRow(user, names), 0, user, sum.received, sum.sent});
  }
  return visible;
}

} // namespace tidewell::nettop
