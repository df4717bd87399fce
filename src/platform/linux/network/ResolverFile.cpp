#include "platform/linux/network/ResolverFile.h"

#include "base/TextPieces.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include <arpa/inet.h>

namespace tidewell {

namespace {

constexpr std::string_view keyword = "nameserver";
constexpr std::string_view blanks = " \t\r";
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

} // namespace

std::vector<std::string> parseResolverFile(std::string_view text) {
  std::vector<std::string> servers;
  for (std::string_view line : splitAt(text, '\n')) {
    if (!line.starts_with(keyword)) {
      continue;
    }
    line.remove_prefix(keyword.size());
    const std::string_view rest = trim(line, blanks);
    const std::string server(rest.substr(0, rest.find_first_of(blanks)));
    const bool isSeparated =
        line.size() != rest.size() && blanks.find(line.front()) != std::string_view::npos;
    if (isSeparated && isAddress(server)) {
      servers.push_back(server);
    }
  }
  return servers;
}

} // namespace tidewell
