#include "helpers/nettop/DiagRoute.h"

#include "helpers/nettop/DiagRows.h"
#include "helpers/nettop/Second.h"
#include "helpers/nettop/SockDiagSocket.h"
#include "helpers/nettop/TcpMovement.h"

#include <unordered_set>

namespace tidewell::nettop {

namespace {

DeviceTraffic difference(const DeviceTraffic& before, const DeviceTraffic& after) {
  // An interface that was made anew counts from zero.
  return {after.received > before.received ? after.received - before.received : 0,
          after.sent > before.sent ? after.sent - before.sent : 0};
}

Holders holdersOf(const std::vector<TcpReading>& movement) {
  std::unordered_set<std::uint32_t> inodes;
  for (const TcpReading& socket : movement) {
    inodes.insert(socket.inode);
  }
  return findHolders(std::move(inodes));
}

} // namespace

Measurement measureWithDiag() {
  SockDiagSocket sockets;
  TcpEnds ends;
  TcpReadings before;
  TcpReadings after;
  TcpReadings ended;
  const auto devices = devicesToTheWorld();
  if (!sockets.isOpen() || !sockets.ask(before)) {
    return {{}, "the kernel tells nothing of TCP sockets"};
  }
  const DeviceTraffic allBefore = readDeviceTraffic(devices);
  ends.take(ended);
  const Second second;
  for (int tenth = 1; tenth <= 10; ++tenth) {
    second.wait(tenth);
    ends.take(ended);
  }
  const DeviceTraffic allAfter = readDeviceTraffic(devices);
  if (!sockets.ask(after)) {
    return {{}, "the kernel tells nothing of TCP sockets"};
  }
  ends.take(ended);
  const auto movement = tcpMovement(before, after, ended);
  return {
      diagRows(movement, holdersOf(movement), localUserNames(), difference(allBefore, allAfter)),
      {}};
}

} // namespace tidewell::nettop
