#include "platform/linux/bus/ResolvedServers.h"

#include "platform/linux/bus/BusMessages.h"
#include "platform/linux/bus/BusQuestion.h"
#include "platform/linux/network/AddressText.h"

#include <utility>

#include <systemd/sd-bus.h>

namespace tidewell {
namespace {

// More than anybody uses. A hostile reply may hold millions.
constexpr std::size_t mostServers = 64;

} // namespace

std::vector<ResolvedServer> readResolvedServers(sd_bus_message* reply) {
  std::vector<ResolvedServer> servers;
  if (sd_bus_message_enter_container(reply, SD_BUS_TYPE_VARIANT, "a(iiay)") <= 0 ||
      sd_bus_message_enter_container(reply, SD_BUS_TYPE_ARRAY, "(iiay)") <= 0) {
    return servers;
  }
  while (servers.size() < mostServers &&
         sd_bus_message_enter_container(reply, SD_BUS_TYPE_STRUCT, "iiay") > 0) {
    int index = 0;
    int family = 0;
    const void* address = nullptr;
    std::size_t size = 0;
    if (sd_bus_message_read(reply, "ii", &index, &family) < 0 ||
        sd_bus_message_read_array(reply, 'y', &address, &size) < 0 ||
        sd_bus_message_exit_container(reply) < 0) {
      break;
    }
    if (auto text = addressText(family, address, size)) {
      servers.push_back({index, *text});
    }
  }
  return servers;
}

std::vector<std::string> inOrderOfChoice(const std::vector<ResolvedServer>& servers,
                                         std::optional<int> primaryIndex) {
  const auto rank = [primaryIndex](const ResolvedServer& server) {
    if (primaryIndex && server.interfaceIndex == *primaryIndex) {
      return 0;
    }
    return server.interfaceIndex <= 0 ? 1 : 2;
  };
  std::vector<std::string> addresses;
  for (int wanted = 0; wanted <= 2; ++wanted) {
    for (const ResolvedServer& server : servers) {
      if (rank(server) == wanted) {
        addresses.push_back(server.address);
      }
    }
  }
  return addresses;
}

Async<std::vector<ResolvedServer>> askResolved(EventLoop& loop, SessionBus& systemBus,
                                               Seconds limit) {
  BusQuestion question{"org.freedesktop.resolve1",
                       "/org/freedesktop/resolve1",
                       propertiesInterface,
                       "Get",
                       {"org.freedesktop.resolve1.Manager", "DNS"}};
  const BusMessage reply = co_await ask(loop, systemBus, std::move(question), limit);
  co_return reply ? readResolvedServers(reply.get()) : std::vector<ResolvedServer>();
}

} // namespace tidewell
