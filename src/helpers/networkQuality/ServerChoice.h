#pragma once

#include "helpers/networkQuality/TestServer.h"

#include <optional>
#include <string>

namespace tidewell {

class TransferLoop;

/// The address of the configuration document that the user has named, in the environment's
/// `TIDEWELL_SPEEDTEST_CONFIG` or else in `tidewell/speedtest.conf` in the configuration directory;
/// empty when none is named.
[[nodiscard]] std::string documentAddress();

/// A server, or why there is none in words.
struct ServerChoice {
  std::optional<TestServer> server;
  std::string failure;
};

/// The server that the document of this address describes; the default one of an empty address.
[[nodiscard]] ServerChoice chooseServer(TransferLoop& loop, const std::string& address);

} // namespace tidewell
