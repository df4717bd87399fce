#pragma once

#include "platform/linux/network/TcpCounts.h"

#include <curl/curl.h>

namespace tidewell {

/// What the connections that some transfers open have moved, one after another, open or closed.
class TcpTally {
public:
  TcpTally() = default;
  TcpTally(const TcpTally&) = delete;
  TcpTally& operator=(const TcpTally&) = delete;

  /// Counts the connections of this transfer. The tally outlives them, and so their pool.
  void count(CURL* transfer);

  [[nodiscard]] TcpCounts counts() const;

  /// The open connection; -1 for none.
  [[nodiscard]] int socket() const { return m_socket; }

private:
  static curl_socket_t onOpen(void* self, curlsocktype purpose, curl_sockaddr* address);
  static int onClose(void* self, curl_socket_t socket);

  TcpCounts m_closed;
  int m_socket = -1;
};

} // namespace tidewell
