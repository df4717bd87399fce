#include "helpers/networkQuality/FailureText.h"

namespace tidewell {

namespace {

std::string textOf(CURLcode code) {
  switch (code) {
  case CURLE_COULDNT_RESOLVE_HOST:
    return "the server's name leads nowhere";
  case CURLE_COULDNT_CONNECT:
    return "the server cannot be reached";
  case CURLE_OPERATION_TIMEDOUT:
    return "the server does not answer in time";
  case CURLE_PEER_FAILED_VERIFICATION:
    return "the server cannot prove who it is";
  case CURLE_PARTIAL_FILE:
  case CURLE_GOT_NOTHING:
  case CURLE_RECV_ERROR:
  case CURLE_SEND_ERROR:
    return "the server breaks the connection off";
  case CURLE_URL_MALFORMAT:
    return "no authorities are known that a server could be checked against";
  default:
    return std::string("the transfer fails: ") + curl_easy_strerror(code);
  }
}

} // namespace

std::optional<std::string> failureText(const TransferOutcome& outcome) {
  const long kind = outcome.status / 100;
  if (outcome.status != 0 && !outcome.isHttp2) {
    return "the server does not speak HTTP/2";
  }
  if (kind == 3) {
    return "the server redirects to another place";
  }
  if (kind > 3) {
    return "the server refuses with status " + std::to_string(outcome.status);
  }
  if (outcome.isTooLong) {
    return "the server's reply is too long";
  }
  return outcome.code == CURLE_OK ? std::nullopt : std::optional(textOf(outcome.code));
}

} // namespace tidewell
