#include "platform/linux/bus/ConnmanServers.h"

#include "platform/linux/bus/BusQuestion.h"
#include "platform/linux/network/AddressText.h"

#include <cstddef>
#include <string_view>
#include <utility>

namespace tidewell {
namespace {

constexpr std::size_t mostNameservers = 64;

std::vector<std::string> readServers(sd_bus_message* message) {
  std::vector<std::string> servers;
  if (sd_bus_message_enter_container(message, SD_BUS_TYPE_VARIANT, "as") <= 0 ||
      sd_bus_message_enter_container(message, SD_BUS_TYPE_ARRAY, "s") <= 0) {
    return servers;
  }
  const char* server = nullptr;
  while (servers.size() < mostNameservers && sd_bus_message_read(message, "s", &server) > 0) {
    if (isAddress(server)) {
      servers.emplace_back(server);
    }
  }
  return servers;
}

} // namespace

std::vector<std::string> readConnmanServers(sd_bus_message* reply) {
  const char* key = nullptr;
  if (sd_bus_message_enter_container(reply, SD_BUS_TYPE_ARRAY, "(oa{sv})") <= 0 ||
      sd_bus_message_enter_container(reply, SD_BUS_TYPE_STRUCT, "oa{sv}") <= 0 ||
      sd_bus_message_skip(reply, "o") < 0 ||
      sd_bus_message_enter_container(reply, SD_BUS_TYPE_ARRAY, "{sv}") <= 0) {
    return {};
  }
  while (sd_bus_message_enter_container(reply, SD_BUS_TYPE_DICT_ENTRY, "sv") > 0) {
    if (sd_bus_message_read(reply, "s", &key) <= 0) {
      return {};
    }
    if (std::string_view(key) == "Nameservers") {
      return readServers(reply);
    }
    if (sd_bus_message_skip(reply, "v") < 0 || sd_bus_message_exit_container(reply) < 0) {
      return {};
    }
  }
  return {};
}

Async<std::vector<std::string>> askConnman(EventLoop& loop, SessionBus& systemBus, Seconds limit) {
  BusQuestion question{"net.connman", "/", "net.connman.Manager", "GetServices", {}};
  const BusMessage reply = co_await ask(loop, systemBus, std::move(question), limit);
  co_return reply ? readConnmanServers(reply.get()) : std::vector<std::string>();
}

} // namespace tidewell
