#pragma once

#include <memory>
#include <string>

#include <curl/curl.h>

struct x509_store_st;

namespace tidewell {

struct FreeCurlList {
  void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};
using CurlList = std::unique_ptr<curl_slist, FreeCurlList>;

/// The authorities that the machine trusts, read once for all connections, because reading them
/// takes twenty times as long as a connection's handshake. `SSL_CERT_FILE` and `SSL_CERT_DIR`
/// override them.
class TrustStore {
public:
  TrustStore();

  /// Makes the transfer accept only a server that proves its name to these authorities. If this
  /// returns false, the transfer must not be made. The store outlives the transfer.
  [[nodiscard]] bool apply(CURL* transfer) const;

private:
  std::shared_ptr<x509_store_st> m_store;
};

/// The server of a measurement: where to connect to, and whom to trust.
///
/// A host with many addresses may resolve to another one at each look-up, but all parts of a
/// measurement have to use the same line. So all transfers go to the address of the first one.
class Destination {
public:
  /// The host of an address itself, or `endpoint` in its place if that is not empty.
  explicit Destination(const std::string& endpoint);

  /// Connects to this address and port from now on.
  void pin(const std::string& address, long port);

  /// Sends the transfer there. Returns false if nobody can be trusted. Outlives the transfer.
  [[nodiscard]] bool apply(CURL* transfer) const;

private:
  TrustStore m_trust;
  CurlList m_connectTo;
};

} // namespace tidewell
