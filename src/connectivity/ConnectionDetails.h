#pragma once

#include "connectivity/ConnectionInfo.h"

#include "base/Async.h"

#include <string>

namespace tidewell {

class ConfigurationStore;
class HttpClient;
class InterfaceAddresses;
struct Platform;

/// Collects the details of the current connection. A failed lookup gives its fallback text. Waits
/// up to three seconds for the public address.
class ConnectionDetails {
public:
  /// Replies with the caller's address as plain text, over IPv4 and without a log-in.
  static constexpr const char* echoEndpoint = "https://api.ipify.org";

  /// Borrows the platform.
  explicit ConnectionDetails(const Platform& platform);

  /// All details of the primary interface, whose link has this type.
  [[nodiscard]] Async<ConnectionInfo> fetchConnectionInfo(ConnectionInfo::InterfaceType type);

private:
  [[nodiscard]] std::string networkName(ConnectionInfo::InterfaceType type);
  [[nodiscard]] std::string ipAddress(const std::string& interface);
  [[nodiscard]] Async<std::string> publicIP();
  [[nodiscard]] Async<std::string> dnsServer();

  ConfigurationStore& m_configuration;
  InterfaceAddresses& m_addresses;
  HttpClient& m_http;
};

} // namespace tidewell
