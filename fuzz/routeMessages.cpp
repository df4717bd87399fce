// Any bytes as the kernel's answers about routes and addresses, in memory of exactly their size.

#include "platform/linux/network/LinuxInterfaceAddresses.h"
#include "platform/linux/network/RouteSocket.h"
#include "support/Require.h"

#include <array>

#include <arpa/inet.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using tidewell::fuzz::require;
  if (size == 0) {
    return 0;
  }
  const auto messages = tidewell::fuzz::messagesOf(data + 1, size - 1);
  const auto address = tidewell::parseFirstIPv4(messages, data[0]);
  if (address) {
    std::array<unsigned char, 4> bytes{};
    require(::inet_pton(AF_INET, address->c_str(), bytes.data()) == 1);
  }
  const auto route = tidewell::parseRoute(messages);
  require(!route || route->source.size() < size);
  // Bytes after the last whole message are not read.
  auto longer = messages;
  longer.resize((longer.size() + 3) & ~std::size_t{3});
  longer.resize(longer.size() + 64, std::byte{0xFF});
  const auto again = tidewell::parseRoute(longer);
  require(!route || (again && again->interfaceIndex == route->interfaceIndex));
  require(!address || tidewell::parseFirstIPv4(longer, data[0]) == address);
  return 0;
}
