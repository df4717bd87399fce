#include "helpers/publicAddress/HttpsFetch.h"

#include <cstddef>
#include <cstdlib>
#include <memory>

#include <curl/curl.h>

namespace tidewell {

namespace {

// An address takes 45 bytes; whatever a hotspot's log-in page weighs, its text is of no use.
constexpr std::size_t longestBody = 4096;

struct Cleanup {
  void operator()(CURL* transfer) const { curl_easy_cleanup(transfer); }
};
using Transfer = std::unique_ptr<CURL, Cleanup>;

std::size_t append(const char* data, std::size_t /*one*/, std::size_t size, void* target) {
  auto& body = *static_cast<std::string*>(target);
  if (size > longestBody - body.size()) {
    return 0; // ends the transfer with an error
  }
  body.append(data, size);
  return size;
}

bool allowOnlyHttps(CURL* transfer) {
#if LIBCURL_VERSION_NUM >= 0x075500
  return curl_easy_setopt(transfer, CURLOPT_PROTOCOLS_STR, "https") == CURLE_OK;
#else
  return curl_easy_setopt(transfer, CURLOPT_PROTOCOLS, CURLPROTO_HTTPS) == CURLE_OK;
#endif
}

bool verifyTheOtherEnd(CURL* transfer) {
  const char* const authorities = std::getenv("SSL_CERT_FILE");
  if (authorities != nullptr &&
      curl_easy_setopt(transfer, CURLOPT_CAINFO, authorities) != CURLE_OK) {
    return false;
  }
  constexpr long nameMustMatch = 2;
  return curl_easy_setopt(transfer, CURLOPT_SSL_VERIFYPEER, 1L) == CURLE_OK &&
         curl_easy_setopt(transfer, CURLOPT_SSL_VERIFYHOST, nameMustMatch) == CURLE_OK;
}

} // namespace

std::optional<std::string> fetchOverHttps(const std::string& url, long limitMilliseconds) {
  const Transfer transfer(curl_easy_init());
  if (!transfer || !allowOnlyHttps(transfer.get()) || !verifyTheOtherEnd(transfer.get())) {
    return std::nullopt;
  }
  std::string body;
  curl_easy_setopt(transfer.get(), CURLOPT_URL, url.c_str());
  curl_easy_setopt(transfer.get(), CURLOPT_USERAGENT, "Tidewell/" TIDEWELL_VERSION);
  curl_easy_setopt(transfer.get(), CURLOPT_FOLLOWLOCATION, 0L);
  curl_easy_setopt(transfer.get(), CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(transfer.get(), CURLOPT_TIMEOUT_MS, limitMilliseconds);
  curl_easy_setopt(transfer.get(), CURLOPT_WRITEFUNCTION, &append);
  curl_easy_setopt(transfer.get(), CURLOPT_WRITEDATA, &body);
  if (curl_easy_perform(transfer.get()) != CURLE_OK) {
    return std::nullopt;
  }
  return body;
}

} // namespace tidewell
