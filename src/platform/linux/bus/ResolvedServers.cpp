#include "platform/linux/bus/ResolvedServers.h"

#include "platform/linux/bus/BusMessages.h"
#include "platform/linux/bus/SessionBus.h"
#include "platform/linux/loop/EventLoop.h"
#include "platform/linux/network/AddressText.h"

#include <cerrno>
#include <cstdint>
#include <memory>

#include <systemd/sd-bus.h>

namespace tidewell {
namespace {

// More than anybody uses. A hostile reply may hold millions.
constexpr std::size_t mostServers = 64;

struct CloseBus {
  void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
};
using Bus = std::unique_ptr<sd_bus, CloseBus>;

/// A query to systemd-resolved on a connection of its own.
class Question {
public:
  Question(EventLoop& loop, Seconds limit) : m_loop(loop) {
    if (begin()) {
      m_limit = loop.repeat(limit, 0.0, [this] { m_waiter.resume(); });
    }
  }

  /// Waits for the reply or the limit; empty without a reply.
  Async<std::vector<ResolvedServer>> answer() {
    if (m_limit) {
      co_await m_waiter;
    }
    co_return std::move(m_servers);
  }

private:
  void takeReply(sd_bus_message* reply) {
    m_isOver = true;
    if (reply != nullptr) {
      m_servers = readResolvedServers(reply);
    }
  }

  bool begin() {
    m_bus = takeFrom<Bus>([](sd_bus** opened) { return sd_bus_open_system(opened); });
    const auto call = takeFrom<BusMessage>([this](sd_bus_message** made) {
      return m_bus ? sd_bus_message_new_method_call(m_bus.get(), made, "org.freedesktop.resolve1",
                                                    "/org/freedesktop/resolve1",
                                                    propertiesInterface, "Get")
                   : -ENOTCONN;
    });
    if (!call ||
        sd_bus_message_append(call.get(), "ss", "org.freedesktop.resolve1.Manager", "DNS") < 0 ||
        sd_bus_message_set_auto_start(call.get(), 0) < 0) {
      return false;
    }
    m_call = withHandler([this](sd_bus_message* reply) { takeReply(reply); },
                         [&](sd_bus_slot** slot, sd_bus_message_handler_t callback, void* own) {
                           return sd_bus_call_async(m_bus.get(), slot, call.get(), callback, own,
                                                    UINT64_MAX);
                         });
    m_watch = m_loop.watch(sd_bus_get_fd(m_bus.get()), 0, [this](std::uint32_t) { process(); });
    return m_call && m_watch && listen();
  }

  /// Has the loop wait for the events that the connection waits for.
  bool listen() {
    const int wanted = sd_bus_get_events(m_bus.get());
    if (wanted >= 0) {
      m_watch->setEvents(epollEvents(wanted));
    }
    return wanted >= 0;
  }

  void process() {
    int result = 1;
    while (result > 0 && !m_isOver) {
      result = sd_bus_process(m_bus.get(), nullptr);
    }
    if (m_isOver || result < 0 || !listen()) {
      m_watch.reset();
      m_waiter.resume(); // may destroy this query
    }
  }

  EventLoop& m_loop;
  Bus m_bus;
  BusSlot m_call;
  std::unique_ptr<FdWatch> m_watch; // declared after the connection, whose descriptor it watches
  std::unique_ptr<Timer> m_limit;
  bool m_isOver = false;
  std::vector<ResolvedServer> m_servers;
  Waiter m_waiter;
};

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

Async<std::vector<ResolvedServer>> askResolved(EventLoop& loop, Seconds limit) {
  Question question(loop, limit);
  co_return co_await question.answer();
}

} // namespace tidewell
