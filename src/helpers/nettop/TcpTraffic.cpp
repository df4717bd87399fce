#include "helpers/nettop/TcpTraffic.h"

#include <algorithm>
#include <set>
#include <utility>

namespace tidewell::nettop {
namespace {

/// What a counter moved; 0 if it went back.
std::uint64_t moved(std::uint64_t before, std::uint64_t after) {
  return after - std::min(before, after);
}

void addMovement(const TcpReadings& before, const TcpReading& last,
                 std::vector<TcpReading>& movement) {
  TcpReading socket = last;
  if (const auto earlier = before.find(last.cookie); earlier != before.end()) {
    socket.received = moved(earlier->second.received, last.received);
    socket.sent = moved(earlier->second.sent, last.sent);
    if (socket.inode == 0) {
      socket.inode = earlier->second.inode;
      socket.user = earlier->second.user;
    }
  }
  if (!socket.isLoopback && (socket.received != 0 || socket.sent != 0)) {
    movement.push_back(socket);
  }
}

void eraseConnectionsWithin(std::vector<TcpReading>& movement) {
  std::set<std::pair<TcpEnd, TcpEnd>> connections;
  for (const TcpReading& socket : movement) {
    connections.emplace(socket.local, socket.remote);
  }
  std::erase_if(movement, [&connections](const TcpReading& socket) {
    return connections.contains({socket.remote, socket.local});
  });
}

} // namespace

std::vector<TcpReading> tcpMovement(const TcpReadings& before, const TcpReadings& after,
                                    const TcpReadings& ended) {
  std::vector<TcpReading> movement;
  for (const auto& [cookie, last] : ended) {
    addMovement(before, last, movement);
  }
  for (const auto& [cookie, last] : after) {
    if (!ended.contains(cookie)) {
      addMovement(before, last, movement);
    }
  }
  eraseConnectionsWithin(movement);
  return movement;
}

} // namespace tidewell::nettop
