// Prints the body of the reply to one HTTPS GET, whatever its status: `publicAddress URL`. Fails
// silently if the address is not HTTPS, if the server cannot prove its name, or if no whole reply
// has come after three seconds. Follows no redirections. curl's environment variables choose a
// proxy; `SSL_CERT_FILE`, if set, holds the authorities to trust.

#include "platform/linux/process/Confinement.h"

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>

#include <curl/curl.h>
#include <unistd.h>

namespace {

constexpr long limitMilliseconds = 3000;

// An address takes 45 bytes. The log-in page of a hotspot would be of no use.
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

bool verifyServer(CURL* transfer) {
  const char* const authorities = std::getenv("SSL_CERT_FILE");
  if (authorities != nullptr &&
      curl_easy_setopt(transfer, CURLOPT_CAINFO, authorities) != CURLE_OK) {
    return false;
  }
  constexpr long nameMustMatch = 2;
  return curl_easy_setopt(transfer, CURLOPT_SSL_VERIFYPEER, 1L) == CURLE_OK &&
         curl_easy_setopt(transfer, CURLOPT_SSL_VERIFYHOST, nameMustMatch) == CURLE_OK;
}

std::optional<std::string> fetch(const char* url) {
  const Transfer transfer(curl_easy_init());
  if (!transfer || !allowOnlyHttps(transfer.get()) || !verifyServer(transfer.get())) {
    return std::nullopt;
  }
  std::string body;
  curl_easy_setopt(transfer.get(), CURLOPT_URL, url);
  curl_easy_setopt(transfer.get(), CURLOPT_USERAGENT, "Tidewell/" TIDEWELL_VERSION);
  curl_easy_setopt(transfer.get(), CURLOPT_FOLLOWLOCATION, 0L);
  curl_easy_setopt(transfer.get(), CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(transfer.get(), CURLOPT_TIMEOUT_MS, limitMilliseconds);
  curl_easy_setopt(transfer.get(), CURLOPT_WRITEFUNCTION, &append);
  curl_easy_setopt(transfer.get(), CURLOPT_WRITEDATA, &body);
  return curl_easy_perform(transfer.get()) == CURLE_OK ? std::optional(body) : std::nullopt;
}

} // namespace

int main(int argumentCount, char** arguments) {
  tidewell::confineToNetwork();
  if (argumentCount != 2) {
    return EXIT_FAILURE;
  }
  const auto body = fetch(arguments[1]);
  // A pipe takes so short a text whole or not at all.
  const bool isPrinted = body && ::write(STDOUT_FILENO, body->data(), body->size()) ==
                                     static_cast<ssize_t>(body->size());
  return isPrinted ? EXIT_SUCCESS : EXIT_FAILURE;
}
