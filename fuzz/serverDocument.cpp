// Any bytes as a configuration document and as a settings file. The result is three HTTPS addresses
// of one host, or nothing.

#include "helpers/networkQuality/TestServer.h"
#include "support/Require.h"

#include <string>
#include <string_view>

using tidewell::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  if (const auto server = tidewell::parseServerDocument(text)) {
    const auto host = tidewell::httpsHost(server->largeDownload);
    require(host && !host->empty());
    require(tidewell::httpsHost(server->smallDownload) == host);
    require(tidewell::httpsHost(server->upload) == host);
    require(server->endpoint.empty() || tidewell::isHostName(server->endpoint));
    require(server->endpoint.find('\0') == std::string::npos);
  }
  const std::string address = tidewell::addressInSettings(text);
  require(address.find('\n') == std::string::npos && !address.starts_with('#'));
  if (const auto host = tidewell::httpsHost(address)) {
    require(address.starts_with("https://" + address.substr(8, host->size())));
  }
  return 0;
}
