// Any bytes as the kernel's answers about sockets, in memory of exactly their size.

#include "helpers/nettop/SockDiag.h"
#include "support/Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tidewell::nettop;
  TcpReadings readings;
  for (const TcpReading& reading : parseSockDiag(tidewell::fuzz::messagesOf(data, size))) {
    readings.insert_or_assign(reading.cookie, reading);
  }
  for (const TcpReading& socket : tcpMovement({}, readings, {})) {
    tidewell::fuzz::require(socket.received != 0 || socket.sent != 0);
    tidewell::fuzz::require(!socket.isLoopback &&
                            socket.received <= readings[socket.cookie].received);
  }
  return 0;
}
