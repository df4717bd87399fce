#include "helpers/nettop/TrafficTable.h"

#include <algorithm>
#include <cstddef>
#include <limits>

namespace tidewell::nettop {
namespace {

constexpr const char* unknownName = "unknown";

std::uint64_t total(const ProcessTraffic& row) { return row.received + row.sent; }

void subtract(std::uint64_t& amount, std::uint64_t& from) {
  const std::uint64_t part = std::min(amount, from);
  from -= part;
  amount -= part;
}

} // namespace

void TrafficTable::add(const SocketTraffic& socket) {
  Entry& entry = m_entries[socket.owner.process];
  entry.traffic.received += socket.received;
  entry.traffic.sent += socket.sent;
  // Interface indices are only unique within a network namespace.
  if (socket.owner.mayTunnel != 0) {
    m_tunnelReceived += socket.tunnelReceived;
    m_tunnelSent += socket.tunnelSent;
  }
}

void TrafficTable::addLost(std::uint64_t received, std::uint64_t sent) {
  m_lost.received += received;
  m_lost.sent += sent;
}

std::vector<std::uint32_t> TrafficTable::owners() const {
  std::vector<std::uint32_t> owners;
  owners.reserve(m_entries.size());
  for (const auto& [owner, entry] : m_entries) {
    owners.push_back(owner);
  }
  return owners;
}

void TrafficTable::name(std::uint32_t owner, const ProcessRecord& record) {
  const auto found = m_entries.find(owner);
  if (found == m_entries.end() || owner > std::numeric_limits<std::int32_t>::max()) {
    return;
  }
  const auto* const end = std::ranges::find(record.name, '\0');
  Entry& entry = found->second;
  entry.traffic.name.assign(std::begin(record.name), end);
  entry.traffic.process = static_cast<std::int32_t>(owner);
  entry.traffic.user = record.user;
  entry.servesTunnel = record.servesTunnel != 0;
}

std::vector<ProcessTraffic> TrafficTable::rows() const {
  std::vector<ProcessTraffic> rows;
  std::vector<ProcessTraffic> servers;
  ProcessTraffic unknown{unknownName};
  for (const auto& [owner, entry] : m_entries) {
    if (entry.traffic.name.empty()) {
      unknown.received += entry.traffic.received;
      unknown.sent += entry.traffic.sent;
    } else {
      (entry.servesTunnel ? servers : rows).push_back(entry.traffic);
    }
  }
  // The busiest of several servers most likely carried it.
  std::ranges::sort(servers, std::ranges::greater{}, total);
  std::uint64_t received = m_tunnelReceived;
  std::uint64_t sent = m_tunnelSent;
  for (ProcessTraffic& server : servers) {
    subtract(received, server.received);
    subtract(sent, server.sent);
    rows.push_back(server);
  }
  rows.push_back(unknown);
  rows.push_back(m_lost);
  std::erase_if(rows, [](const ProcessTraffic& row) { return total(row) == 0; });
  return rows;
}

} // namespace tidewell::nettop
