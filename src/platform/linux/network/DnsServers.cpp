#include "platform/linux/network/DnsServers.h"

#include "base/Scheduler.h"
#include "platform/linux/bus/ResolvedServers.h"
#include "platform/linux/files/FileReading.h"
#include "platform/linux/network/ResolverFile.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

#include <unistd.h>

namespace tidewell {

namespace {

// An answer takes a millisecond or two.
constexpr Seconds busLimit = 0.25;

constexpr std::size_t mostBytes = 65536;

// systemd-resolved(8): the full stub and the one that only forwards.
bool isStub(const std::string& server) { return server == "127.0.0.53" || server == "127.0.0.54"; }

std::vector<std::string> serversOf(const std::string& path) {
  return parseResolverFile(readFile(path, mostBytes).contents);
}

} // namespace

bool DnsChoice::offer(const std::vector<std::string>& servers) {
  if (m_servers.empty()) {
    std::ranges::copy_if(servers, std::back_inserter(m_stubs), isStub);
    std::ranges::remove_copy_if(servers, std::back_inserter(m_servers), isStub);
  }
  return !m_servers.empty();
}

std::optional<std::vector<std::string>> DnsChoice::servers() const {
  if (!m_servers.empty()) {
    return m_servers;
  }
  return m_stubs.empty() ? std::nullopt : std::optional(m_stubs);
}

Async<std::optional<std::vector<std::string>>> findDnsServers(EventLoop& loop, DnsPlaces places,
                                                              std::optional<int> primaryIndex) {
  DnsChoice choice;
  bool isFound = false;
  if (::access(places.resolvedDirectory.c_str(), F_OK) == 0) {
    const std::vector<ResolvedServer> servers = co_await askResolved(loop, busLimit);
    isFound = choice.offer(inOrderOfChoice(servers, primaryIndex)) ||
              choice.offer(serversOf(places.resolvedDirectory + "/resolv.conf"));
  }
  if (!isFound) {
    choice.offer(serversOf(places.resolverFile));
  }
  co_return choice.servers();
}

} // namespace tidewell
