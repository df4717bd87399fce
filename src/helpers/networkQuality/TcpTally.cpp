#include "helpers/networkQuality/TcpTally.h"

#include <linux/tcp.h> // tcp_info with its newer members
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tidewell {

void TcpTally::count(CURL* transfer) {
  curl_easy_setopt(transfer, CURLOPT_OPENSOCKETFUNCTION, &onOpen);
  curl_easy_setopt(transfer, CURLOPT_OPENSOCKETDATA, this);
  curl_easy_setopt(transfer, CURLOPT_CLOSESOCKETFUNCTION, &onClose);
  curl_easy_setopt(transfer, CURLOPT_CLOSESOCKETDATA, this);
}

TcpCounts TcpTally::counts() const {
  TcpCounts sum = m_closed;
  tcp_info info{};
  socklen_t size = sizeof info;
  if (isOpen() && ::getsockopt(m_socket, IPPROTO_TCP, TCP_INFO, &info, &size) == 0) {
    // The handshake's sequence number counts as a byte.
    const std::uint64_t acknowledged = info.tcpi_bytes_acked > 0 ? info.tcpi_bytes_acked - 1 : 0;
    sum += {info.tcpi_bytes_received, acknowledged};
  }
  return sum;
}

void TcpTally::limitUnsent(std::uint32_t bytes) const {
  ::setsockopt(m_socket, IPPROTO_TCP, TCP_NOTSENT_LOWAT, &bytes, sizeof bytes);
}

curl_socket_t TcpTally::onOpen(void* self, curlsocktype /*purpose*/, curl_sockaddr* address) {
  const int socket = ::socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
  static_cast<TcpTally*>(self)->m_socket = socket;
  return socket;
}

int TcpTally::onClose(void* self, curl_socket_t socket) {
  auto& tally = *static_cast<TcpTally*>(self);
  if (tally.m_socket == socket) {
    tally.m_closed = tally.counts();
    tally.m_socket = -1;
  }
  return ::close(socket);
}

} // namespace tidewell
