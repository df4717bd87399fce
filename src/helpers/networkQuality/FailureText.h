#pragma once

#include <optional>
#include <string>

#include <curl/curl.h>

namespace tidewell {

/// How a transfer stands, or how it has ended.
struct TransferOutcome {
  CURLcode code = CURLE_OK;
  long status = 0; // of the reply; 0 before it
  bool isHttp2 = true;
  bool isTooLong = false; // so it was ended, whatever the code says
};

/// What is wrong with the transfer, for people; none when nothing is.
[[nodiscard]] std::optional<std::string> failureText(const TransferOutcome& outcome);

} // namespace tidewell
