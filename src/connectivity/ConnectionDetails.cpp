#include "connectivity/ConnectionDetails.h"

#include "base/DisplayText.h"
#include "base/IfMemoryAllows.h"
#include "base/Scheduler.h"
#include "base/TextPieces.h"
#include "base/Utf8.h"
#include "platform/ConfigurationStore.h"
#include "platform/HttpClient.h"
#include "platform/InterfaceAddresses.h"
#include "platform/Platform.h"
#include "sampling/BandwidthSampler.h"

#include <optional>
#include <string_view>
#include <vector>

namespace tidewell {
namespace {

using InterfaceType = ConnectionInfo::InterfaceType;

constexpr const char* unknown = "--";
constexpr Seconds publicAddressWait = 3.0;

} // namespace

ConnectionDetails::ConnectionDetails(const Platform& platform)
    : m_configuration(platform.configuration), m_addresses(platform.addresses),
      m_http(platform.http) {}

Async<ConnectionInfo> ConnectionDetails::fetchConnectionInfo(InterfaceType type) {
  const std::string device = BandwidthSampler::detectPrimaryInterface(m_configuration);
  ConnectionInfo info;
  // The kernel allows nearly any bytes in a name; D-Bus allows only text.
  info.interfaceName = std::string(rawValue(type)) + " (" + displayText(device) + ")";
  info.networkName = networkName(type);
  info.ipAddress = ipAddress(device);
  info.publicIP = co_await publicIP();
  info.dns = co_await dnsServer();
  info.interfaceType = type;
  co_return info;
}

std::string ConnectionDetails::networkName(InterfaceType type) {
  if (type == InterfaceType::ethernet) {
    return "Ethernet";
  }
  const char* const fallback = type == InterfaceType::wifi ? "Wi-Fi" : "Unknown";
  return m_configuration.wifiNetworkName().value_or(fallback);
}

std::string ConnectionDetails::ipAddress(const std::string& interface) {
  return m_addresses.firstIPv4(interface).value_or(unknown);
}

Async<std::string> ConnectionDetails::publicIP() {
  const std::optional<std::string> body = co_await m_http.get(echoEndpoint, publicAddressWait);
  std::string address = unknown;
  const bool isRead = ifMemoryAllows([&] {
    if (body && isUtf8(*body)) {
      address = displayText(trim(*body));
    }
  });
  co_return isRead ? address : unknown;
}

Async<std::string> ConnectionDetails::dnsServer() {
  const std::optional<std::vector<std::string>> servers = co_await m_configuration.dnsServers();
  co_return servers && !servers->empty() ? servers->front() : unknown;
}

} // namespace tidewell
