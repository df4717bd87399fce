#include "ui/application/ResidentSocket.h"

#include <array>
#include <cerrno>

#include <sys/socket.h>
#include <unistd.h>

namespace tidewell {

bool ResidentSocket::isThere() {
  int type = 0;
  socklen_t size = sizeof type;
  return ::getsockopt(STDIN_FILENO, SOL_SOCKET, SO_TYPE, &type, &size) == 0 &&
         type == SOCK_SEQPACKET;
}

ResidentSocket::ResidentSocket() : m_readable(STDIN_FILENO, QSocketNotifier::Read) {
  connect(&m_readable, &QSocketNotifier::activated, this, &ResidentSocket::read);
}

void ResidentSocket::report(const WindowReport& report) const {
  const std::string message = messageOf(report);
  ::send(static_cast<int>(m_readable.socket()), message.data(), message.size(),
         MSG_NOSIGNAL | MSG_DONTWAIT);
}

void ResidentSocket::read() {
  std::array<char, longestWindowMessage> piece{};
  const auto size = ::recv(STDIN_FILENO, piece.data(), piece.size(), MSG_DONTWAIT);
  if (size > 0) {
    const auto request = parseWindowRequest({piece.data(), static_cast<std::size_t>(size)});
    if (request) {
      Q_EMIT requested(*request);
    }
    report({WindowReport::Kind::taken, {}});
  } else if (size == 0 || (errno != EAGAIN && errno != EINTR && errno != ECONNRESET)) {
    // A resident that exits with unread reports resets the connection. Its last messages can still
    // be read after that error.
    m_readable.setEnabled(false);
    Q_EMIT closed();
  }
}

} // namespace tidewell
