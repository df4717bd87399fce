// Any message as systemd-resolved's reply, and as connman's. The result is a limited number of
// addresses.

#include "platform/linux/bus/BusMessages.h"
#include "platform/linux/bus/ConnmanServers.h"
#include "platform/linux/bus/ResolvedServers.h"
#include "support/AnyBody.h"
#include "support/Require.h"

#include <algorithm>
#include <array>
#include <string>

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
         ::inet_pton(AF_INET6, text.substr(0, text.find('%')).c_str(), bytes.data()) == 1;
}

/// A well-formed list of services with any texts as their servers.
int appendServices(sd_bus_message& message, FuzzedDataProvider& input) {
  tidewell::BusWriter writer(message);
  writer.open('a', "(oa{sv})");
  while (writer.result() >= 0 && input.remaining_bytes() > 0) {
    writer.open('r', "oa{sv}").add("o", "/any").open('a', "{sv}").open('e', "sv");
    writer.add("s", input.ConsumeBool() ? "Nameservers" : "Name").open('v', "as").open('a', "s");
    for (int count = input.ConsumeIntegralInRange(0, 80); count > 0; --count) {
      // Texts of a message are UTF-8 without zeros.
      std::string text = input.ConsumeRandomLengthString(70);
      std::ranges::replace_if(
          text, [](char byte) { return byte <= 0; }, '.');
      writer.add("s", text.c_str());
    }
    writer.close().close().close().close().close();
  }
  return writer.close().result();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider input(data, size);
  const auto message = tidewell::takeFrom<BusMessage>([](sd_bus_message** made) {
    return sd_bus_message_new_signal(connection(), made, "/", "org.example.Any", "Any");
  });
  require(message != nullptr);
  const int kind = input.ConsumeIntegralInRange(0, 3);
  const int appended =
      kind == 0   ? tidewell::fuzz::appendAny(*message, tidewell::fuzz::anySignature(input), input)
      : kind == 1 ? appendServices(*message, input)
                  : appendServers(*message, input);
  if (appended < 0 || sd_bus_message_seal(message.get(), 1, 0) < 0 ||
      sd_bus_message_rewind(message.get(), 1) < 0) {
    return 0;
  }
  const auto behind = tidewell::readConnmanServers(message.get());
  require(behind.size() <= 64 && std::ranges::all_of(behind, isAddress));
  sd_bus_message_rewind(message.get(), 1);
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
