#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include <systemd/sd-bus.h>

namespace tidewell {

struct BusSlotEnd {
  void operator()(sd_bus_slot* slot) const { sd_bus_slot_unref(slot); }
};
/// A registration on a connection (object, match or pending call); ends when destroyed.
using BusSlot = std::unique_ptr<sd_bus_slot, BusSlotEnd>;

struct BusMessageEnd {
  void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using BusMessage = std::unique_ptr<sd_bus_message, BusMessageEnd>;

/// Owns the object that an sd-bus function returns through a pointer; null if the function fails.
template <class Owner, class Function> Owner takeFrom(Function&& function) {
  typename Owner::pointer raw = nullptr;
  if (function(&raw) < 0) {
    return nullptr;
  }
  return Owner(raw);
}

/// Receives a message; null for the reply of a call that failed.
using BusHandler = std::function<void(sd_bus_message* message)>;

/// Registers a handler by `add(slot, callback, userData)`. The slot owns the handler.
template <class Add> BusSlot withHandler(BusHandler handler, Add&& add) {
  const auto callback = [](sd_bus_message* message, void* own, sd_bus_error* /*error*/) {
    const bool isError = sd_bus_message_is_method_error(message, nullptr) != 0;
    (*static_cast<BusHandler*>(own))(isError ? nullptr : message);
    return 0;
  };
  auto owned = std::make_unique<BusHandler>(std::move(handler));
  auto slot =
      takeFrom<BusSlot>([&](sd_bus_slot** made) { return add(made, callback, owned.get()); });
  if (slot) {
    sd_bus_slot_set_destroy_callback(slot.get(),
                                     [](void* own) { delete static_cast<BusHandler*>(own); });
    static_cast<void>(owned.release());
  }
  return slot;
}

/// An object of another program. Its interface has the name of the service.
struct BusService {
  const char* name;
  const char* path;
};

inline constexpr BusService busDaemon{"org.freedesktop.DBus", "/org/freedesktop/DBus"};
inline constexpr const char* propertiesInterface = "org.freedesktop.DBus.Properties";

/// Calls a method with arguments of these D-Bus types. The handler runs once, unless the slot is
/// destroyed first. Null if the message cannot be sent.
template <class... Arguments>
BusSlot callMethod(sd_bus& bus, const BusService& service, const char* method, BusHandler answered,
                   const char* types = "", Arguments... arguments) {
  return withHandler(std::move(answered), [&](auto** slot, auto callback, void* own) {
    return sd_bus_call_method_async(&bus, slot, service.name, service.path, service.name, method,
                                    callback, own, types, arguments...);
  });
}

/// Receives the signals that this match rule selects.
inline BusSlot watchSignal(sd_bus& bus, const char* match, BusHandler heard) {
  return withHandler(std::move(heard), [&](auto** slot, auto callback, void* own) {
    return sd_bus_add_match_async(&bus, slot, match, callback, nullptr, own);
  });
}

/// Receives `NameOwnerChanged` of this name; its arguments are name, old owner and new owner.
inline BusSlot watchOwner(sd_bus& bus, const std::string& name, BusHandler changed) {
  const std::string match = "type='signal',sender='org.freedesktop.DBus',"
                            "path='/org/freedesktop/DBus',interface='org.freedesktop.DBus',"
                            "member='NameOwnerChanged',arg0='" +
                            name + "'";
  return watchSignal(bus, match.c_str(), std::move(changed));
}

/// Appends to a message until a step fails; `result` is negative from then on.
class BusWriter {
public:
  explicit BusWriter(sd_bus_message& message) : m_message(message) {}

  BusWriter& open(char type, const char* contents) {
    return step([&] { return sd_bus_message_open_container(&m_message, type, contents); });
  }
  BusWriter& close() {
    return step([&] { return sd_bus_message_close_container(&m_message); });
  }
  template <class... Values> BusWriter& add(const char* types, Values... values) {
    return step([&] { return sd_bus_message_append(&m_message, types, values...); });
  }
  template <class Append> BusWriter& step(Append&& append) {
    if (m_result >= 0) {
      m_result = append();
    }
    return *this;
  }
  [[nodiscard]] int result() const { return m_result; }

private:
  sd_bus_message& m_message;
  int m_result = 0;
};

} // namespace tidewell
