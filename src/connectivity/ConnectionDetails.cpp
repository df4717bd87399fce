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

#include <string_view>

namespace tidewell {

namespace {

using InterfaceType = ConnectionInfo::InterfaceType;

constexpr const char* unknown = "--";
constexpr Seconds publicAddressWait = 3.0;

constexpr std::string_view blanks = " \t\r\n\v\f";

} // namespace

ConnectionDetails::ConnectionDetails(const Platform& platform)
    : m_configuration(platform.configuration), m_addresses(platform.addresses),
      m_http(platform.http) {}

ConnectionInfo ConnectionDetails::fetchConnectionInfo(InterfaceType type) {
  const std::string device = BandwidthSampler::detectPrimaryInterface(m_configuration);
  ConnectionInfo info;
  // The kernel takes nearly any bytes for a name; a bus takes text alone.
  info.interfaceName = std::string(rawValue(type)) + " (" + displayText(device) + ")";
  info.networkName = networkName(type);
  info.ipAddress = ipAddress(device);
  info.publicIP = publicIP();
  info.dns = dnsServer();
  info.interfaceType = type;
  return info;
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

std::string ConnectionDetails::publicIP() {
  const auto body = m_http.get(echoEndpoint, publicAddressWait);
  std::string address = unknown;
  const bool isRead = ifMemoryAllows([&] {
    if (body && isUtf8(*body)) {
      address = trim(*body, blanks);
    }
  });
  return isRead ? address : unknown;
}

std::string ConnectionDetails::dnsServer() {
  const auto servers = m_configuration.dnsServers();
  return servers && !servers->empty() ? servers->front() : unknown;
}

} // namespace tidewell
