#include "platform/linux/network/TcpCounts.h"

#include <linux/tcp.h> // tcp_info with its newer members
#include <netinet/in.h>
#include <sys/socket.h>

namespace tidewell {

TcpCounts tcpCounts(int socket) {
  tcp_info info{};
  socklen_t size = sizeof info;
  if (::getsockopt(socket, IPPROTO_TCP, TCP_INFO, &info, &size) != 0) {
    return {};
  }
  // The handshake's own number counts as a byte.
  const std::uint64_t acknowledged = info.tcpi_bytes_acked > 0 ? info.tcpi_bytes_acked - 1 : 0;
  return {info.tcpi_bytes_received, acknowledged};
}

void limitUnsent(int socket, std::uint32_t bytes) {
  ::setsockopt(socket, IPPROTO_TCP, TCP_NOTSENT_LOWAT, &bytes, sizeof bytes);
}

} // namespace tidewell
