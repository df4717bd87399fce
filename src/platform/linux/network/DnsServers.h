#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tidewell {

/// Where the system keeps its DNS servers.
struct DnsPlaces {
  /// The directory of systemd-resolved, which is not asked where it is missing.
  std::string resolvedDirectory = "/run/systemd/resolve";
  std::string resolverFile = "/etc/resolv.conf";
};

/// One place that may know DNS servers, first choice first.
using DnsSource = std::function<std::vector<std::string>()>;

/// The servers of the first source that knows any besides systemd-resolved's own address on this
/// machine, which only hands questions on; this address when nothing else is known; none without
/// it. Later sources are not asked. Pure.
[[nodiscard]] std::optional<std::vector<std::string>>
firstServers(const std::vector<DnsSource>& sources);

/// The DNS servers in use: systemd-resolved's, those of the interface with this index first, those
/// of its file, those of resolv.conf. Blocks for a quarter of a second at the most. Any thread but
/// main.
[[nodiscard]] std::optional<std::vector<std::string>>
findDnsServers(const DnsPlaces& places, std::optional<int> primaryIndex);

} // namespace tidewell
