// Any message as systemd-resolved's reply. The result is a limited number of addresses.

#include "platform/linux/bus/BusMessages.h"
#include "platform/linux/bus/ResolvedServers.h"
#include "support/AnyBody.h"
#include "support/Require.h"

#include <algorithm>
#include <array>

#include <arpa/inet.h>
#include <sys/socket.h>

namespace {

using tidewell::BusMessage;
using tidewell::fuzz::require;

/// An unconnected bus; its messages are never sent.
sd_bus* connection() {
  static sd_bus* const bus = [] {
    std::array<int, 2> ends{};
    sd_bus* made = nullptr;
    require(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()) == 0 && sd_bus_new(&made) >= 0);
    require(sd_bus_set_fd(made, ends[0], ends[0]) >= 0 && sd_bus_start(made) >= 0);
    return made;
  }();
  return bus;
}

/// A well-formed list of servers with any contents, some of them addresses.
int appendServers(sd_bus_message& message, FuzzedDataProvider& input) {
  int result = sd_bus_message_open_container(&message, 'v', "a(iiay)");
  result = result < 0 ? result : sd_bus_message_open_container(&message, 'a', "(iiay)");
  while (result >= 0 && input.remaining_bytes() > 0) {
    const int family = input.PickValueInArray({AF_INET, AF_INET6, AF_UNSPEC, -1});
    const auto size = input.PickValueInArray<std::size_t>({4, 16, 0, 5, 300});
    const auto bytes = input.ConsumeBytes<std::uint8_t>(size);
    result = sd_bus_message_open_container(&message, 'r', "iiay");
    result = result < 0
                 ? result
                 : sd_bus_message_append(&message, "ii", input.ConsumeIntegral<int>(), family);
    result = result < 0 ? result
                        : sd_bus_message_append_array(&message, 'y', bytes.data(), bytes.size());
    result = result < 0 ? result : sd_bus_message_close_container(&message);
  }
  result = result < 0 ? result : sd_bus_message_close_container(&message);
  return result < 0 ? result : sd_bus_message_close_container(&message);
}

bool isAddress(const std::string& text) {
  std::array<unsigned char, 16> bytes{};
  return ::inet_pton(AF_INET, text.c_str(), bytes.data()) == 1 ||
         ::inet_pton(AF_INET6, text.c_str(), bytes.data()) == 1;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider input(data, size);
  const auto message = tidewell::takeFrom<BusMessage>([](sd_bus_message** made) {
    return sd_bus_message_new_signal(connection(), made, "/", "org.example.Any", "Any");
  });
  require(message != nullptr);
  const bool isUsual = input.ConsumeIntegralInRange(0, 3) != 0;
  const int appended =
      isUsual ? appendServers(*message, input)
              : tidewell::fuzz::appendAny(*message, tidewell::fuzz::anySignature(input), input);
  if (appended < 0 || sd_bus_message_seal(message.get(), 1, 0) < 0 ||
      sd_bus_message_rewind(message.get(), 1) < 0) {
    return 0;
  }
  const auto servers = tidewell::readResolvedServers(message.get());
  require(servers.size() <= 64);
  for (const auto& server : servers) {
    require(isAddress(server.address));
  }
  auto ordered = tidewell::inOrderOfChoice(servers, 2);
  require(ordered.size() == servers.size());
  const bool hasPrimary =
      std::ranges::any_of(servers, [](const auto& s) { return s.interfaceIndex == 2; });
  require(!hasPrimary || std::ranges::any_of(servers, [&](const auto& s) {
    return s.interfaceIndex == 2 && s.address == ordered.front();
  }));
  return 0;
}
