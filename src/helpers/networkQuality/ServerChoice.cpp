#include "helpers/networkQuality/ServerChoice.h"

#include "helpers/networkQuality/HttpsAddress.h"
#include "helpers/networkQuality/ServerSettings.h"
#include "helpers/networkQuality/SingleTransfer.h"
#include "platform/linux/files/ConfigurationDirectory.h"
#include "platform/linux/files/FileReading.h"

#include <cstdlib>

namespace tidewell {

namespace {

constexpr std::size_t longestSettings = 65'536;
constexpr Seconds documentLimit = 8.0;

ServerChoice refuse(const std::string& reason) {
  return {std::nullopt, "the configuration document is of no use: " + reason};
}

} // namespace

std::string documentAddress() {
  const char* const named = std::getenv("TIDEWELL_SPEEDTEST_CONFIG");
  if (named != nullptr && *named != '\0') {
    return named;
  }
  return addressInSettings(
      readFile(configurationDirectory() + "/tidewell/speedtest.conf", longestSettings).contents);
}

ServerChoice chooseServer(TransferLoop& loop, const std::string& address) {
  if (address.empty()) {
    return {defaultServer(), {}};
  }
  if (!httpsHost(address)) {
    return refuse("its address has to begin with https:// and name a host");
  }
  const Route route({});
  Transfer transfer(route, address);
  transfer.allowHttp1();
  transfer.keepBody(longestDocument);
  transfer.setLimit(documentLimit);
  performAlone(loop, transfer);
  if (const auto failure = transfer.failure()) {
    return refuse(*failure);
  }
  const auto server = parseServerDocument(transfer.body());
  return server ? ServerChoice{server, {}}
                : refuse("it does not name three addresses of one server");
}

} // namespace tidewell
