#include "helpers/networkQuality/Transfer.h"

#include "base/Translation.h"

#include <string_view>

#include <openssl/ssl.h>

namespace tidewell {
namespace {

constexpr std::size_t mostHeaderBytes = 65'536;
constexpr long connectMilliseconds = 8000;
constexpr long bufferBytes = 131'072;

template <class Value> void set(CURL* handle, CURLoption option, Value value) {
  curl_easy_setopt(handle, option, value);
}

std::string textOf(CURLcode code) {
  switch (code) {
  case CURLE_COULDNT_RESOLVE_HOST:
    return translatable("the server's name leads nowhere");
  case CURLE_COULDNT_CONNECT:
    return translatable("the server cannot be reached");
  case CURLE_OPERATION_TIMEDOUT:
    return translatable("the server does not answer in time");
  case CURLE_PEER_FAILED_VERIFICATION:
    return translatable("the server cannot prove who it is");
  case CURLE_PARTIAL_FILE:
  case CURLE_GOT_NOTHING:
  case CURLE_RECV_ERROR:
  case CURLE_SEND_ERROR:
    return translatable("the server breaks the connection off");
  case CURLE_URL_MALFORMAT:
    return translatable("no authorities are known that a server could be checked against");
  default:
    return std::string(translatable("the transfer fails")) + ": " + curl_easy_strerror(code);
  }
}

} // namespace

Transfer::Transfer(const Destination& destination, const std::string& address)
    : m_handle(curl_easy_init()),
      m_headers(curl_slist_append(nullptr, "Accept-Encoding: identity")) {
  CURL* const handle = m_handle.get();
  // Without an address the transfer fails, which is better than trusting anybody.
  if (destination.apply(handle)) {
    set(handle, CURLOPT_URL, address.c_str());
  }
  set(handle, CURLOPT_PRIVATE, this);
  set(handle, CURLOPT_PROTOCOLS_STR, "https");
  set(handle, CURLOPT_HTTP_VERSION, long{CURL_HTTP_VERSION_2TLS});
  set(handle, CURLOPT_HTTPHEADER, m_headers.get());
  set(handle, CURLOPT_USERAGENT, "Tidewell/" TIDEWELL_VERSION);
  set(handle, CURLOPT_FOLLOWLOCATION, 0L);
  set(handle, CURLOPT_NOSIGNAL, 1L);
  set(handle, CURLOPT_QUICK_EXIT, 1L);
  set(handle, CURLOPT_SSL_SESSIONID_CACHE, 0L);
  set(handle, CURLOPT_CONNECTTIMEOUT_MS, connectMilliseconds);
  set(handle, CURLOPT_BUFFERSIZE, bufferBytes);
  set(handle, CURLOPT_WRITEFUNCTION, &onBody);
  set(handle, CURLOPT_WRITEDATA, this);
  set(handle, CURLOPT_HEADERFUNCTION, &onHeader);
  set(handle, CURLOPT_HEADERDATA, this);
}

Transfer& Transfer::of(CURL* handle) {
  void* self = nullptr;
  curl_easy_getinfo(handle, CURLINFO_PRIVATE, &self);
  return *static_cast<Transfer*>(self);
}

void Transfer::setLimit(Seconds limit) const {
  set(handle(), CURLOPT_TIMEOUT_MS, static_cast<long>(limit * 1e3));
}

std::optional<std::string> Transfer::failure() const {
  const long kind = status() / 100;
  const bool isHttp2 = number(CURLINFO_HTTP_VERSION) == CURL_HTTP_VERSION_2_0;
  if (status() != 0 && !isHttp2 && !m_allowsHttp1) {
    return translatable("the server does not speak HTTP/2");
  }
  if (kind == 3) {
    return translatable("the server redirects to another place");
  }
  if (kind > 3) {
    return std::string(translatable("the server refuses")) + ": status " + std::to_string(status());
  }
  if (m_isTooLong) {
    return translatable("the server's reply is too long");
  }
  return m_code == CURLE_OK ? std::nullopt : std::optional(textOf(m_code));
}

long Transfer::number(CURLINFO what) const {
  long value = 0;
  curl_easy_getinfo(handle(), what, &value);
  return value;
}

curl_off_t Transfer::amount(CURLINFO what) const {
  curl_off_t value = 0;
  curl_easy_getinfo(handle(), what, &value);
  return value;
}

Seconds Transfer::time(CURLINFO what) const { return static_cast<double>(amount(what)) / 1e6; }

std::string Transfer::text(CURLINFO what) const {
  const char* value = nullptr;
  curl_easy_getinfo(handle(), what, &value);
  return value != nullptr ? value : "";
}

std::size_t Transfer::onBody(const char* data, std::size_t /*one*/, std::size_t size, void* self) {
  auto& transfer = *static_cast<Transfer*>(self);
  if (!transfer.m_bodyLimit) {
    return size;
  }
  if (size > *transfer.m_bodyLimit - transfer.m_body.size()) {
    transfer.m_isTooLong = true;
    return 0; // ends the transfer
  }
  transfer.m_body.append(data, size);
  return size;
}

std::size_t Transfer::onHeader(const char* /*data*/, std::size_t /*one*/, std::size_t size,
                               void* self) {
  auto& transfer = *static_cast<Transfer*>(self);
  if (transfer.m_handshakeRoundTrips == 0) {
    transfer.noteHandshake();
  }
  transfer.m_headerBytes += size;
  transfer.m_isTooLong = transfer.m_headerBytes > mostHeaderBytes;
  // An unusable reply need not be received.
  return transfer.failure() ? 0 : size;
}

void Transfer::noteHandshake() {
  const curl_tlssessioninfo* session = nullptr;
  curl_easy_getinfo(handle(), CURLINFO_TLS_SSL_PTR, &session);
  if (session != nullptr && session->backend == CURLSSLBACKEND_OPENSSL &&
      session->internals != nullptr) {
    const auto* const connection = static_cast<const SSL*>(session->internals);
    m_handshakeRoundTrips = SSL_version(connection) >= TLS1_3_VERSION ? 1 : 2;
  }
}

void Transfer::begin() {
  m_headerBytes = 0;
  m_body.clear();
  m_isTooLong = false;
  m_code = CURLE_OK;
}

void Transfer::finish(CURLcode code) {
  m_code = code;
  if (m_onFinished) {
    // Called as a copy, because it may destroy the transfer and so itself.
    const auto function = m_onFinished;
    function();
  }
}

} // namespace tidewell
