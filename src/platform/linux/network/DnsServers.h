#pragma once

#include "base/Async.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tidewell {

class EventLoop;
class SessionBus;

/// Where the system keeps its DNS servers.
struct DnsPlaces {
  /// The directory of systemd-resolved, which is only asked if this exists.
  std::string resolvedDirectory = "/run/systemd/resolve";
  std::string resolverFile = "/etc/resolv.conf";
  /// The directory of NetworkManager, with the servers behind its proxy on this machine.
  std::string networkManagerDirectory = "/run/NetworkManager";
  /// resolvconf(8)'s list for a dnsmasq on this machine.
  std::string dnsmasqFile = "/run/dnsmasq/resolv.conf";
  /// The directory of connman, which is only asked if this exists.
  std::string connmanDirectory = "/run/connman";
};

/// Reads the addresses of the name servers from the text of a resolv.conf(5) file, in order. Skips
/// lines that name no server or no address. Any text may be given. Pure.
[[nodiscard]] std::vector<std::string> parseResolverFile(std::string_view text);

/// Picks the DNS servers from lists that are offered in order of preference.
///
/// An address of this machine, where a proxy forwards queries, is used only if no list contains
/// another server.
class DnsChoice {
public:
  /// Takes the list unless an earlier one was taken. Returns true once a list with a server
  /// elsewhere was taken.
  bool offer(const std::vector<std::string>& servers);

  /// The servers of that list, else the proxies on this machine; nullopt without either.
  [[nodiscard]] std::optional<std::vector<std::string>> servers() const;

private:
  std::vector<std::string> m_servers;
  std::vector<std::string> m_proxies;
};

/// The DNS servers in use: systemd-resolved's, with those of the interface with this index first,
/// else those of its file, else those of resolv.conf. If these are proxies on this machine, the
/// servers behind them, as far as NetworkManager, resolvconf or connman name them. Waits at most
/// half a second. Borrows the loop and the system bus.
[[nodiscard]] Async<std::optional<std::vector<std::string>>>
findDnsServers(EventLoop& loop, SessionBus& systemBus, DnsPlaces places,
               std::optional<int> primaryIndex);

/// The files that name servers.
[[nodiscard]] std::vector<std::string> filesOf(const DnsPlaces& places);

/// All servers that these files name at present.
[[nodiscard]] std::vector<std::string> serversInFiles(const DnsPlaces& places);

} // namespace tidewell
