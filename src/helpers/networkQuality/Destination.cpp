#include "helpers/networkQuality/Destination.h"

#include <string_view>

#include <openssl/ssl.h>
#include <openssl/x509_vfy.h>

namespace tidewell {
namespace {

// Every server of TLS 1.3 supports P-256. A wrong guess of the group would cost another round trip,
// which a probe would attribute to the line.
constexpr const char* groups = "P-256:X25519:P-384:P-521";

CURLcode prepare(CURL* /*transfer*/, void* context, void* store) {
  auto* const settings = static_cast<SSL_CTX*>(context);
  SSL_CTX_set1_cert_store(settings, static_cast<X509_STORE*>(store));
  return SSL_CTX_set1_groups_list(settings, groups) == 1 ? CURLE_OK : CURLE_SSL_CIPHER;
}

/// The type of the context depends on the library that curl was built with.
bool usesOpenSsl() {
  const char* const library = curl_version_info(CURLVERSION_NOW)->ssl_version;
  return library != nullptr && std::string_view(library).starts_with("OpenSSL/");
}

} // namespace

TrustStore::TrustStore() {
  if (usesOpenSsl()) {
    m_store = {X509_STORE_new(), &X509_STORE_free};
  }
  if (m_store && X509_STORE_set_default_paths(m_store.get()) != 1) {
    m_store.reset();
  }
}

bool TrustStore::apply(CURL* transfer) const {
  constexpr long nameMustMatch = 2;
  // Without a file of certificates, curl uses the store alone.
  return m_store && curl_easy_setopt(transfer, CURLOPT_SSL_VERIFYPEER, 1L) == CURLE_OK &&
         curl_easy_setopt(transfer, CURLOPT_SSL_VERIFYHOST, nameMustMatch) == CURLE_OK &&
         curl_easy_setopt(transfer, CURLOPT_CAINFO, nullptr) == CURLE_OK &&
         curl_easy_setopt(transfer, CURLOPT_CAPATH, nullptr) == CURLE_OK &&
         curl_easy_setopt(transfer, CURLOPT_SSL_CTX_DATA, m_store.get()) == CURLE_OK &&
         curl_easy_setopt(transfer, CURLOPT_SSL_CTX_FUNCTION, &prepare) == CURLE_OK;
}

Destination::Destination(const std::string& endpoint) {
  if (!endpoint.empty()) {
    m_connectTo.reset(curl_slist_append(nullptr, ("::" + endpoint + ":").c_str()));
  }
}

void Destination::pin(const std::string& address, long port) {
  const bool isIpv6 = address.find(':') != std::string::npos;
  const std::string host = isIpv6 ? "[" + address + "]" : address;
  m_connectTo.reset(curl_slist_append(nullptr, ("::" + host + ":" + std::to_string(port)).c_str()));
}

bool Destination::apply(CURL* transfer) const {
  return m_trust.apply(transfer) &&
         curl_easy_setopt(transfer, CURLOPT_CONNECT_TO, m_connectTo.get()) == CURLE_OK &&
         curl_easy_setopt(transfer, CURLOPT_NOPROXY, "*") == CURLE_OK;
}

} // namespace tidewell
