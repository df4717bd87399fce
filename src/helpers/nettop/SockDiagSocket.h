#pragma once

#include "helpers/nettop/TcpReading.h"
#include "platform/linux/loop/FileDescriptor.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tidewell::nettop {

/// Asks the kernel for the TCP sockets of this network namespace. Needs no privilege.
class SockDiagSocket {
public:
  SockDiagSocket();

  [[nodiscard]] bool isOpen() const { return m_socket.isOpen(); }

  /// Adds all sockets of both address families; false when the kernel does not tell.
  [[nodiscard]] bool ask(TcpReadings& readings);

private:
  [[nodiscard]] bool ask(std::uint8_t family, TcpReadings& readings);

  FileDescriptor m_socket;
  std::vector<std::byte> m_buffer;
};

/// Hears of the ends of TCP sockets of this network namespace, from its making on. Needs no
/// privilege.
class TcpEnds {
public:
  TcpEnds();

  /// Adds the sockets that have ended since, without waiting. What did not fit the kernel's queue
  /// in between is lost, so ask ten times a second. Does nothing where the kernel does not tell.
  void take(TcpReadings& readings);

private:
  FileDescriptor m_socket;
  std::vector<std::byte> m_buffer;
};

} // namespace tidewell::nettop
