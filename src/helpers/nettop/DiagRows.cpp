#include "helpers/nettop/DiagRows.h"

#include "helpers/nettop/Visibility.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <utility>

namespace tidewell::nettop {

namespace {

/// A process and its user, or a user alone of whose processes nothing is known.
using Party = std::pair<std::int32_t, std::uint32_t>;

ProcessTraffic rowOf(const TcpReading& socket, const Holders& holders, const UserNames& users) {
  const auto found = holders.find(socket.inode);
  if (found != holders.end()) {
    return {found->second.name, found->second.process, found->second.user};
  }
  // A socket that was made and closed within the second has lost its user with its holder.
  if (socket.inode == 0) {
    return {"unknown"};
  }
  return {userRow(socket.user, users), 0, socket.user};
}

std::uint64_t beyond(std::uint64_t all, std::uint64_t part) { return all - std::min(all, part); }

} // namespace

std::vector<ProcessTraffic> diagRows(const std::vector<TcpReading>& movement,
                                     const Holders& holders, const UserNames& users,
                                     const DeviceTraffic& all) {
  std::map<Party, ProcessTraffic> parties;
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

} // namespace tidewell::nettop
