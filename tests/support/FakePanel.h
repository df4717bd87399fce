#pragma once

#include "platform/linux/bus/BusObject.h"
#include "platform/linux/bus/SessionBus.h"
#include "platform/linux/loop/EpollLoop.h"
#include "support/LoopRunner.h"

#include <cerrno>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace tidewell::test {

/// Takes the place of a desktop's panel: owns the watcher's name, records the item's signals and
/// queries it for the tests, on a connection of its own.
class FakePanel {
public:
  FakePanel(EpollLoop& loop, std::string address)
      : m_loop(loop), m_watcher("/StatusNotifierWatcher", watcherName),
        m_bus(loop, std::move(address)),
        m_connected(m_bus.onConnected([this](sd_bus& bus) { appear(bus); })) {
    m_watcher.method("RegisterStatusNotifierItem", "s", "", [this](auto& call, auto&) {
      const char* item = "";
      sd_bus_message_read(&call, "s", &item);
      ++attempts;
      if (refusals > 0) {
        --refusals;
        return -EACCES;
      }
      items.emplace_back(item);
      return 0;
    });
  }

  /// Whether it owns the watcher's name.
  [[nodiscard]] bool isThere() const { return m_isThere; }

  /// Calls a method of the item's process. On an error returns null and stores its name in `error`.
  BusMessage call(const char* path, const char* interface, const char* method,
                  const std::function<void(sd_bus_message&)>& append = {}) {
    const auto request = takeFrom<BusMessage>([&](sd_bus_message** made) {
      return sd_bus_message_new_method_call(m_bus.connection(), made, items.back().c_str(), path,
                                            interface, method);
    });
    if (append) {
      append(*request);
    }
    m_reply.reset();
    const auto answered = [](sd_bus_message* reply, void* self, sd_bus_error*) {
      static_cast<FakePanel*>(self)->m_reply.reset(sd_bus_message_ref(reply));
      return 0;
    };
    const auto pending = takeFrom<BusSlot>([&](sd_bus_slot** slot) {
      return sd_bus_call_async(m_bus.connection(), slot, request.get(), answered, this, 0);
    });
    if (!runUntil(m_loop, [this] { return m_reply != nullptr; })) {
      return nullptr;
    }
    const sd_bus_error* failure = sd_bus_message_get_error(m_reply.get());
    error = failure != nullptr ? failure->name : "";
    return failure != nullptr ? nullptr : std::move(m_reply);
  }

  /// Reads a property; the message is positioned at its value, inside the variant.
  BusMessage get(const char* path, const char* interface, const char* property, const char* type) {
    auto reply = call(path, propertiesInterface, "Get", [&](sd_bus_message& request) {
      sd_bus_message_append(&request, "ss", interface, property);
    });
    return reply && sd_bus_message_enter_container(reply.get(), 'v', type) > 0 ? std::move(reply)
                                                                               : nullptr;
  }
  std::string text(const char* path, const char* interface, const char* property) {
    const auto reply = get(path, interface, property, "s");
    const char* value = nullptr;
    return reply && sd_bus_message_read(reply.get(), "s", &value) > 0 ? value : "(no text)";
  }

  std::vector<std::string> items; // in order of registration
  int attempts = 0;
  int refusals = 0;                   // how many more registrations it refuses
  std::map<std::string, int> signals; // received, by name
  std::string error;

private:
  static constexpr const char* watcherName = "org.kde.StatusNotifierWatcher";

  void appear(sd_bus& bus) {
    m_watcher.appear(bus);
    const auto heard = [](sd_bus_message* signal, void* self, sd_bus_error*) {
      ++static_cast<FakePanel*>(self)->signals[sd_bus_message_get_member(signal)];
      return 0;
    };
    for (const char* path : {"/StatusNotifierItem", "/MenuBar", "/com/halden/Tidewell"}) {
      const std::string match = std::string("type='signal',path='") + path + "'";
      m_matches.push_back(takeFrom<BusSlot>([&](sd_bus_slot** slot) {
        return sd_bus_add_match_async(&bus, slot, match.c_str(), heard, nullptr, this);
      }));
    }
    const auto owned = [](sd_bus_message*, void* self, sd_bus_error*) {
      static_cast<FakePanel*>(self)->m_isThere = true;
      return 0;
    };
    m_request = takeFrom<BusSlot>([&](sd_bus_slot** slot) {
      return sd_bus_request_name_async(&bus, slot, watcherName, 0, owned, this);
    });
  }

  EpollLoop& m_loop;
  BusMessage m_reply;
  bool m_isThere = false;
  BusObject m_watcher;
  SessionBus m_bus;
  std::vector<BusSlot> m_matches;
  BusSlot m_request;
  Subscription m_connected;
};

} // namespace tidewell::test
