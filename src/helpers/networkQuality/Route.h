#pragma once

#include "helpers/networkQuality/TrustStore.h"

#include <memory>
#include <string>

#include <curl/curl.h>

namespace tidewell {

/// The way to a server: whom to trust, and where to connect to.
///
/// A server of many addresses may answer with another one at each look-up, and the parts of a
/// measurement belong to one line, so all transfers go to the address of the first one.
class Route {
public:
  /// To the host of an address itself, or to another one in its place if that is not empty.
  explicit Route(const std::string& endpoint);

  /// From now on to this address and port.
  void pin(const std::string& address, long port);

  /// Sends the transfer this way. False when nobody can be trusted. Outlives the transfer.
  [[nodiscard]] bool apply(CURL* transfer) const;

private:
  struct FreeList {
    void operator()(curl_slist* list) const { curl_slist_free_all(list); }
  };

  TrustStore m_trust;
  std::unique_ptr<curl_slist, FreeList> m_connectTo;
};

} // namespace tidewell
