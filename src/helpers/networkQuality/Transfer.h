#pragma once

#include "base/Scheduler.h"
#include "helpers/networkQuality/Destination.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <curl/curl.h>

namespace tidewell {

/// An HTTPS request and its reply, over HTTP/2 if the server supports it. Follows no redirections.
/// Headers beyond 64 KiB end it.
class Transfer {
public:
  /// A GET. The destination outlives the transfer.
  Transfer(const Destination& destination, const std::string& address);

  [[nodiscard]] CURL* handle() const { return m_handle.get(); }
  [[nodiscard]] static Transfer& of(CURL* handle);

  /// Keeps the reply's body, of at most this many bytes. A longer body ends the transfer. Without
  /// this call the body may have any length and is discarded.
  void keepBody(std::size_t limit) { m_bodyLimit = limit; }
  [[nodiscard]] const std::string& body() const { return m_body; }

  /// Accepts a reply over an older HTTP version.
  void allowHttp1() { m_allowsHttp1 = true; }

  /// Ends the transfer when it takes longer.
  void setLimit(Seconds limit) const;

  /// Called at the end. May destroy the transfer or add it again.
  void onFinished(std::function<void()> function) { m_onFinished = std::move(function); }

  /// Why the reply is unusable, for people; nullopt while it is usable.
  [[nodiscard]] std::optional<std::string> failure() const;

  /// Whether the server reset the stream without a reply.
  [[nodiscard]] bool wasReset() const { return m_code == CURLE_HTTP2_STREAM && status() == 0; }

  /// The reply's status; 0 before the reply has begun.
  [[nodiscard]] long status() const { return number(CURLINFO_RESPONSE_CODE); }
  [[nodiscard]] long number(CURLINFO what) const;
  [[nodiscard]] curl_off_t amount(CURLINFO what) const;
  [[nodiscard]] Seconds time(CURLINFO what) const;
  [[nodiscard]] std::string text(CURLINFO what) const;

  /// From sending the request to the last byte of the reply.
  [[nodiscard]] Seconds roundTrip() const {
    return time(CURLINFO_TOTAL_TIME_T) - time(CURLINFO_PRETRANSFER_TIME_T);
  }

  /// The round trips of the TLS handshake; 0 before the reply has begun.
  [[nodiscard]] int handshakeRoundTrips() const { return m_handshakeRoundTrips; }

private:
  friend class TransferPool;

  struct Cleanup {
    void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
  };

  static std::size_t onBody(const char* data, std::size_t one, std::size_t size, void* self);
  static std::size_t onHeader(const char* data, std::size_t one, std::size_t size, void* self);
  void noteHandshake();
  void begin();
  void finish(CURLcode code);

  std::unique_ptr<CURL, Cleanup> m_handle;
  CurlList m_headers;
  std::function<void()> m_onFinished;
  std::optional<std::size_t> m_bodyLimit;
  std::string m_body;
  bool m_allowsHttp1 = false;
  std::size_t m_headerBytes = 0;
  bool m_isTooLong = false;
  int m_handshakeRoundTrips = 0;
  CURLcode m_code = CURLE_OK;
};

} // namespace tidewell
