#include "platform/linux/bus/ResolvedServers.h"

#include "platform/linux/network/AddressText.h"

#include <chrono>
#include <cstdint>
#include <memory>

#include <systemd/sd-bus.h>

namespace tidewell {

namespace {

using SteadyClock = std::chrono::steady_clock;

// Nobody uses more; a hostile reply may hold millions.
constexpr std::size_t mostServers = 64;

struct Release {
  void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
  void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using Bus = std::unique_ptr<sd_bus, Release>;
using Message = std::unique_ptr<sd_bus_message, Release>;

/// What has come of a question.
struct Answer {
  bool isThere = false;
  std::vector<ResolvedServer> servers;
};

int takeReply(sd_bus_message* reply, void* userData, sd_bus_error* /*error*/) {
  auto& answer = *static_cast<Answer*>(userData);
  answer.isThere = true;
  if (sd_bus_message_is_method_error(reply, nullptr) == 0) {
    answer.servers = readResolvedServers(reply);
  }
  return 0;
}

bool ask(const Bus& bus, Answer& answer) {
  sd_bus_message* made = nullptr;
  if (sd_bus_message_new_method_call(bus.get(), &made, "org.freedesktop.resolve1",
                                     "/org/freedesktop/resolve1", "org.freedesktop.DBus.Properties",
                                     "Get") < 0) {
    return false;
  }
  const Message question(made);
  return sd_bus_message_append(made, "ss", "org.freedesktop.resolve1.Manager", "DNS") >= 0 &&
         sd_bus_message_set_auto_start(made, 0) >= 0 &&
         sd_bus_call_async(bus.get(), nullptr, made, &takeReply, &answer, UINT64_MAX) >= 0;
}

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

// The calls of sd-bus that wait know no limit while the connection is being made, hence this loop.
std::vector<ResolvedServer> askResolved(Seconds limit) {
  sd_bus* opened = nullptr;
  if (sd_bus_open_system(&opened) < 0) {
    return {};
  }
  const Bus bus(opened);
  Answer answer;
  if (!ask(bus, answer)) {
    return {};
  }
  const auto deadline = SteadyClock::now() + std::chrono::duration<double>(limit);
  while (!answer.isThere) {
    const auto left =
        std::chrono::duration_cast<std::chrono::microseconds>(deadline - SteadyClock::now());
    const int processed = sd_bus_process(bus.get(), nullptr);
    if (processed < 0 || left.count() <= 0) {
      break;
    }
    if (processed == 0 && sd_bus_wait(bus.get(), static_cast<std::uint64_t>(left.count())) < 0) {
      break;
    }
  }
  return answer.servers;
}

} // namespace tidewell
