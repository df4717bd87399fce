#include "platform/linux/network/DnsServers.h"

#include "base/Scheduler.h"
#include "base/TextPieces.h"
#include "platform/linux/bus/ResolvedServers.h"
#include "platform/linux/files/FileReading.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>

#include <arpa/inet.h>
#include <unistd.h>

namespace tidewell {
namespace {

// An answer takes a millisecond or two.
constexpr Seconds busLimit = 0.25;

constexpr std::size_t largestFile = 65536;

// systemd-resolved(8): the full stub and the one that only forwards queries.
bool isStub(const std::string& server) { return server == "127.0.0.53" || server == "127.0.0.54"; }

constexpr std::string_view keyword = "nameserver";
constexpr std::size_t longestAddress = 64; // with a zone

bool isAddress(const std::string& text) {
  const bool isPrintable =
      std::ranges::all_of(text, [](char character) { return character > ' ' && character < 0x7F; });
  if (!isPrintable || text.size() > longestAddress) {
    return false;
  }
  std::array<unsigned char, 16> bytes{};
  // A link-local address may name its interface, such as "fe80::1%wlan0".
  const auto zone = text.find('%');
  return ::inet_pton(AF_INET, text.c_str(), bytes.data()) == 1 ||
         ::inet_pton(AF_INET6, text.substr(0, zone).c_str(), bytes.data()) == 1;
}

std::vector<std::string> serversOf(const std::string& path) {
  return parseResolverFile(readFile(path, largestFile).contents);
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
