#include "helpers/networkQuality/TcpTally.h"

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
  if (m_socket >= 0) {
    const TcpCounts open = tcpCounts(m_socket);
    sum.received += open.received;
    sum.acknowledged += open.acknowledged;
  }
  return sum;
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
