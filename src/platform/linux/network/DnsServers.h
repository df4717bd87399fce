#pragma once

#include "base/Async.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tidewell {

class EventLoop;

/// Where the system keeps its DNS servers.
struct DnsPlaces {
  /// The directory of systemd-resolved, which is only asked if this exists.
  std::string resolvedDirectory = "/run/systemd/resolve";
  std::string resolverFile = "/etc/resolv.conf";
};

/// Reads the addresses of the name servers from the text of a resolv.conf(5) file, in order. Skips
/// lines that name no server or no address. Any text may be given. Pure.
[[nodiscard]] std::vector<std::string> parseResolverFile(std::string_view text);

/// Picks the DNS servers from lists that are offered in order of preference.
///
/// systemd-resolved's own address on this machine, which only forwards queries, is used only if no
/// list contains another server.
class DnsChoice {
public:
  /// Takes the list unless an earlier one was taken. Returns true once a list with another server
  /// was taken.
  bool offer(const std::vector<std::string>& servers);

  /// The servers of that list, else systemd-resolved's own; nullopt without either.
  [[nodiscard]] std::optional<std::vector<std::string>> servers() const;

private:
  std::vector<std::string> m_servers;
  std::vector<std::string> m_stubs;
};

/// The DNS servers in use: systemd-resolved's, with those of the interface with this index first,
/// else those of its file, else those of resolv.conf. Waits at most a quarter of a second.
[[nodiscard]] Async<std::optional<std::vector<std::string>>>
findDnsServers(EventLoop& loop, DnsPlaces places, std::optional<int> primaryIndex);

} // namespace tidewell
