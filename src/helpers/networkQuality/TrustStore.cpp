#include "helpers/networkQuality/TrustStore.h"

#include <string_view>

#include <openssl/ssl.h>
#include <openssl/x509_vfy.h>

namespace tidewell {

namespace {

CURLcode shareStore(CURL* /*transfer*/, void* context, void* store) {
  SSL_CTX_set1_cert_store(static_cast<SSL_CTX*>(context), static_cast<X509_STORE*>(store));
  return CURLE_OK;
}

/// The context's type depends on the library that curl was built with.
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
  // Without a file of its own, curl asks the store alone.
  return m_store && curl_easy_setopt(transfer, CURLOPT_SSL_VERIFYPEER, 1L) == CURLE_OK &&
         curl_easy_setopt(transfer, CURLOPT_SSL_VERIFYHOST, nameMustMatch) == CURLE_OK &&
         curl_easy_setopt(transfer, CURLOPT_CAINFO, nullptr) == CURLE_OK &&
         curl_easy_setopt(transfer, CURLOPT_CAPATH, nullptr) == CURLE_OK &&
         curl_easy_setopt(transfer, CURLOPT_SSL_CTX_DATA, m_store.get()) == CURLE_OK &&
         curl_easy_setopt(transfer, CURLOPT_SSL_CTX_FUNCTION, &shareStore) == CURLE_OK;
}

} // namespace tidewell
