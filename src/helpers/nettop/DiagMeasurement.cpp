#include "helpers/nettop/Measurement.h"

#include "helpers/nettop/Rows.h"
#include "helpers/nettop/SockDiag.h"

#include <unordered_set>

namespace tidewell::nettop {
namespace {

constexpr const char* noSockets = "the kernel tells nothing of TCP sockets";

DeviceTraffic difference(const DeviceTraffic& before, const DeviceTraffic& after) {
  // A recreated interface counts from zero.
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
  TcpSockets sockets;
  const TcpEnds ends;
  TcpReadings before;
  TcpReadings after;
  TcpReadings ended;
  const auto devices = devicesToTheWorld();
  if (!sockets.addTo(before)) {
    return {{}, noSockets};
  }
  const DeviceTraffic allBefore = readDeviceTraffic(devices);
  ends.addTo(ended);
  const Second second;
  for (int tenth = 1; tenth <= 10; ++tenth) {
    second.wait(tenth);
    ends.addTo(ended);
  }
  const DeviceTraffic allAfter = readDeviceTraffic(devices);
  if (!sockets.addTo(after)) {
    return {{}, noSockets};
  }
  ends.addTo(ended);
  const auto movement = tcpMovement(before, after, ended);
  return {
      diagRows(movement, holdersOf(movement), localUserNames(), difference(allBefore, allAfter)),
      {}};
}

} // namespace tidewell::nettop
