#include "helpers/networkQuality/Route.h"

namespace tidewell {

Route::Route(const std::string& endpoint) {
  if (!endpoint.empty()) {
    m_connectTo.reset(curl_slist_append(nullptr, ("::" + endpoint + ":").c_str()));
  }
}

void Route::pin(const std::string& address, long port) {
  const bool isIpv6 = address.find(':') != std::string::npos;
  const std::string host = isIpv6 ? "[" + address + "]" : address;
  m_connectTo.reset(curl_slist_append(nullptr, ("::" + host + ":" + std::to_string(port)).c_str()));
}

bool Route::apply(CURL* transfer) const {
  return m_trust.apply(transfer) &&
         curl_easy_setopt(transfer, CURLOPT_CONNECT_TO, m_connectTo.get()) == CURLE_OK &&
         curl_easy_setopt(transfer, CURLOPT_NOPROXY, "*") == CURLE_OK;
}

} // namespace tidewell
