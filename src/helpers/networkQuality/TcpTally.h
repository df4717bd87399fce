#pragma once

#include <cstdint>

#include <curl/curl.h>

namespace tidewell {

/// What a TCP connection has moved: the bytes received and the bytes that the peer acknowledged.
/// Excludes bytes that only wait in a buffer.
struct TcpCounts {
  std::uint64_t received = 0;
  std::uint64_t acknowledged = 0;

  TcpCounts& operator+=(const TcpCounts& other) {
    received += other.received;
    acknowledged += other.acknowledged;
    return *this;
  }
};

/// Adds up what the connections of some transfers have moved. At most one is open at a time.
class TcpTally {
public:
  TcpTally() = default;
  TcpTally(TcpTally&&) = delete;

  /// Counts the connections of this transfer. The tally outlives them, and so their pool.
  void count(CURL* transfer);

  [[nodiscard]] TcpCounts counts() const;

  [[nodiscard]] bool isOpen() const { return m_socket >= 0; }

  /// Limits the unsent bytes in the open connection's buffer, because they delay what is written
  /// next.
  void limitUnsent(std::uint32_t bytes) const;

private:
  static curl_socket_t onOpen(void* self, curlsocktype purpose, curl_sockaddr* address);
  static int onClose(void* self, curl_socket_t socket);

  TcpCounts m_closed;
  int m_socket = -1;
};

} // namespace tidewell
