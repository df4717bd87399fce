#pragma once

#include "connectivity/ConnectionInfo.h"

#include "base/Async.h"

#include <string>

namespace tidewell {

class ConfigurationStore;
class HttpClient;
class InterfaceAddresses;
struct Platform;

/// Gathers the details of the current connection. Every lookup that fails gives its fallback text.
/// The lookup of the public address waits for up to three seconds.
class ConnectionDetails {
public:
  /// Answers a GET with the caller's address as plain text, over IPv4 and without a log-in.
  static constexpr const char* echoEndpoint = "https://api.ipify.org";

  /// Borrows the platform.
  explicit ConnectionDetails(const Platform& platform);

  /// All details of the primary interface, whose link is of this kind.
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
