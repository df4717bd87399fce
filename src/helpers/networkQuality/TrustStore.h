#pragma once

#include <memory>

#include <curl/curl.h>

struct x509_store_st;

namespace tidewell {

/// The authorities that the machine trusts, read once for all connections: reading them for each
/// takes twenty times as long as the connection's own encryption. `SSL_CERT_FILE` and
/// `SSL_CERT_DIR`, where they are set, name others.
class TrustStore {
public:
  TrustStore();

  /// Makes the transfer accept only who proves its name to these authorities. False when that is
  /// not possible, and then the transfer must not be made. The store outlives the transfer.
  [[nodiscard]] bool apply(CURL* transfer) const;

private:
  std::shared_ptr<x509_store_st> m_store;
};

} // namespace tidewell
