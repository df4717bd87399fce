// Any bytes as a resolver's file. The results are addresses, and a proxy on this machine only
// if there is no other.

#include "platform/linux/network/DnsServers.h"
#include "support/Require.h"

#include <algorithm>
#include <array>
#include <string>

#include <arpa/inet.h>

namespace {

using tidewell::fuzz::require;

bool isAddress(const std::string& server) {
  std::array<unsigned char, 16> bytes{};
  return ::inet_pton(AF_INET, server.c_str(), bytes.data()) == 1 ||
         ::inet_pton(AF_INET6, server.substr(0, server.find('%')).c_str(), bytes.data()) == 1;
}

bool isProxy(const std::string& server) { return server.starts_with("127.") || server == "::1"; }

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto text = tidewell::fuzz::textOf(data, size);
  const auto servers = tidewell::parseResolverFile(text);
  for (const std::string& server : servers) {
    require(isAddress(server) && server.size() <= 64);
    require(text.find(server) != std::string_view::npos);
    tidewell::fuzz::requireShowable(server);
  }
  tidewell::DnsChoice choice;
  choice.offer({});
  choice.offer(servers);
  const auto chosen = choice.servers();
  require(chosen.has_value() == !servers.empty());
  if (chosen && !std::ranges::all_of(servers, isProxy)) {
    require(std::ranges::none_of(*chosen, isProxy));
  }
  return 0;
}
