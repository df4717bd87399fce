#include "platform/linux/network/DnsServers.h"

#include "base/Scheduler.h"
#include "base/TextPieces.h"
#include "platform/linux/bus/ConnmanServers.h"
#include "platform/linux/bus/ResolvedServers.h"
#include "platform/linux/files/FileReading.h"
#include "platform/linux/network/AddressText.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

#include <unistd.h>

namespace tidewell {
namespace {

// An answer takes a millisecond or two.
constexpr Seconds busLimit = 0.25;

constexpr std::size_t largestFile = 65536;

bool isOnThisMachine(const std::string& server) {
  return server.starts_with("127.") || server == "::1";
}

constexpr std::string_view keyword = "nameserver";

std::vector<std::string> serversOf(const std::string& path) {
  return parseResolverFile(readFile(path, largestFile).contents);
}

std::string configurationOf(const std::string& networkManagerDirectory) {
  return networkManagerDirectory + "/resolv.conf";
}

std::string serversBehind(const std::string& networkManagerDirectory) {
  return networkManagerDirectory + "/no-stub-resolv.conf";
}

bool exists(const std::string& path) { return ::access(path.c_str(), F_OK) == 0; }

/// The servers behind NetworkManager's own proxy; empty if it runs none.
std::vector<std::string> managersServers(const std::string& directory) {
  const std::vector<std::string> configured = serversOf(configurationOf(directory));
  const bool hasProxy = !configured.empty() && std::ranges::all_of(configured, isOnThisMachine);
  return hasProxy ? serversOf(serversBehind(directory)) : std::vector<std::string>();
}

} // namespace

std::vector<std::string> parseResolverFile(std::string_view text) {
  std::vector<std::string> servers;
  for (std::string_view line : splitAt(text, '\n')) {
    if (!line.starts_with(keyword)) {
      continue;
    }
    line.remove_prefix(keyword.size());
    const std::string_view rest = trim(line);
    const std::string server(rest.substr(0, rest.find_first_of(whitespace)));
    const bool isSeparated =
        line.size() != rest.size() && whitespace.find(line.front()) != std::string_view::npos;
    if (isSeparated && isAddress(server)) {
      servers.push_back(server);
    }
  }
  return servers;
}

bool DnsChoice::offer(const std::vector<std::string>& servers) {
  if (m_servers.empty()) {
    std::ranges::copy_if(servers, std::back_inserter(m_proxies), isOnThisMachine);
    std::ranges::remove_copy_if(servers, std::back_inserter(m_servers), isOnThisMachine);
  }
  return !m_servers.empty();
}

std::optional<std::vector<std::string>> DnsChoice::servers() const {
  if (!m_servers.empty()) {
    return m_servers;
  }
  return m_proxies.empty() ? std::nullopt : std::optional(m_proxies);
}

Async<std::optional<std::vector<std::string>>> findDnsServers(EventLoop& loop,
                                                              SessionBus& systemBus,
                                                              DnsPlaces places,
                                                              std::optional<int> primaryIndex) {
  DnsChoice choice;
  bool isFound = false;
  if (exists(places.resolvedDirectory)) {
    const std::vector<ResolvedServer> servers = co_await askResolved(loop, systemBus, busLimit);
    isFound = choice.offer(inOrderOfChoice(servers, primaryIndex)) ||
              choice.offer(serversOf(places.resolvedDirectory + "/resolv.conf"));
  }
  isFound = isFound || choice.offer(serversOf(places.resolverFile)) ||
            choice.offer(managersServers(places.networkManagerDirectory)) ||
            choice.offer(serversOf(places.dnsmasqFile));
  if (!isFound && exists(places.connmanDirectory)) {
    const std::vector<std::string> servers = co_await askConnman(loop, systemBus, busLimit);
    choice.offer(servers);
  }
  co_return choice.servers();
}

std::vector<std::string> filesOf(const DnsPlaces& places) {
  return {places.resolverFile, places.resolvedDirectory + "/resolv.conf",
          configurationOf(places.networkManagerDirectory),
          serversBehind(places.networkManagerDirectory), places.dnsmasqFile};
}

std::vector<std::string> serversInFiles(const DnsPlaces& places) {
  std::vector<std::string> all;
  for (const std::string& path : filesOf(places)) {
    std::ranges::copy(serversOf(path), std::back_inserter(all));
  }
  return all;
}

} // namespace tidewell
