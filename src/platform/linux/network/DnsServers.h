#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tidewell {

/// Where the system keeps its DNS servers.
struct DnsPlaces {
  /// The directory of systemd-resolved, which is only asked if this exists.
  std::string resolvedDirectory = "/run/systemd/resolve";
  std::string resolverFile = "/etc/resolv.conf";
};

/// Reads the addresses of the name servers from the text of a resolv.conf(5) file, in order. Skips
/// lines that name no server or no address. Any text may be given. Pure.
[[nodiscard]] std::vector<std::string> parseResolverFile(std::string_view text);

/// One place that may know DNS servers.
using DnsSource = std::function<std::vector<std::string>()>;

/// The servers of the first source that knows any other than systemd-resolved's own address on this
/// machine, which only forwards queries. Returns that address if no source knows another server,
/// and nullopt if none knows any. Later sources are not asked. Pure.
[[nodiscard]] std::optional<std::vector<std::string>>
firstServers(const std::vector<DnsSource>& sources);

/// The DNS servers in use: systemd-resolved's, with those of the interface with this index first,
/// else those of its file, else those of resolv.conf. Blocks for at most a quarter of a second.
[[nodiscard]] std::optional<std::vector<std::string>>
findDnsServers(const DnsPlaces& places, std::optional<int> primaryIndex);

} // namespace tidewell
