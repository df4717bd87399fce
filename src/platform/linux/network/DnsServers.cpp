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

std::optional<std::vector<std::string>> firstServers(const std::vector<DnsSource>& sources) {
  std::vector<std::string> stubs;
  for (const DnsSource& source : sources) {
    std::vector<std::string> servers = source();
    std::ranges::copy_if(servers, std::back_inserter(stubs), isStub);
    std::erase_if(servers, isStub);
    if (!servers.empty()) {
      return servers;
    }
  }
  return stubs.empty() ? std::nullopt : std::optional(stubs);
}

std::optional<std::vector<std::string>> findDnsServers(const DnsPlaces& places,
                                                       std::optional<int> primaryIndex) {
  std::vector<DnsSource> sources;
  if (::access(places.resolvedDirectory.c_str(), F_OK) == 0) {
    sources.emplace_back([&] { return inOrderOfChoice(askResolved(busLimit), primaryIndex); });
    sources.emplace_back([&] { return serversOf(places.resolvedDirectory + "/resolv.conf"); });
  }
  sources.emplace_back([&] { return serversOf(places.resolverFile); });
  return firstServers(sources);
}

} // namespace tidewell
