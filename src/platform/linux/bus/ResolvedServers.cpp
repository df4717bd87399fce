#include "platform/linux/bus/ResolvedServers.h"

#include "platform/linux/bus/SessionBus.h"
#include "platform/linux/loop/EventLoop.h"
#include "platform/linux/network/AddressText.h"

#include <cstdint>
#include <memory>

#include <systemd/sd-bus.h>

namespace tidewell {

namespace {

// More than anybody uses. A hostile reply may hold millions.
constexpr std::size_t mostServers = 64;

struct Release {
  void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
  void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using Bus = std::unique_ptr<sd_bus, Release>;
using Message = std::unique_ptr<sd_bus_message, Release>;

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
  static int takeReply(sd_bus_message* reply, void* self, sd_bus_error* /*error*/) {
    auto& question = *static_cast<Question*>(self);
    question.m_isOver = true;
    if (sd_bus_message_is_method_error(reply, nullptr) == 0) {
      question.m_servers = readResolvedServers(reply);
    }
    return 0;
  }

  bool begin() {
    sd_bus* opened = nullptr;
    if (sd_bus_open_system(&opened) < 0) {
      return false;
    }
    m_bus.reset(opened);
    sd_bus_message* made = nullptr;
    if (sd_bus_message_new_method_call(opened, &made, "org.freedesktop.resolve1",
                                       "/org/freedesktop/resolve1",
                                       "org.freedesktop.DBus.Properties", "Get") < 0) {
      return false;
    }
    const Message call(made);
    if (sd_bus_message_append(made, "ss", "org.freedesktop.resolve1.Manager", "DNS") < 0 ||
        sd_bus_message_set_auto_start(made, 0) < 0 ||
        sd_bus_call_async(opened, nullptr, made, &takeReply, this, UINT64_MAX) < 0) {
      return false;
    }
    m_watch = m_loop.watch(sd_bus_get_fd(opened), 0, [this](std::uint32_t) { process(); });
    return m_watch && listen();
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
