#pragma once

#include "platform/linux/bus/BusTypes.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <variant>
#include <vector>

namespace tidewell {

/// A property's value of one of the plain types ("b", "i", "u", "x", "d", "s" and "o").
using BusValue = std::variant<bool, std::int32_t, std::uint32_t, std::int64_t, double, std::string>;

/// One interface of one object on a bus, described by functions.
///
/// All members are added before the object first appears. Main thread.
class BusObject {
public:
  /// Appends a value to a message; negative on failure.
  using Append = std::function<int(sd_bus_message& reply)>;
  /// Answers a call: appends to `reply`, or gives back a negative errno, which the caller hears.
  using Answer = std::function<int(sd_bus_message& call, sd_bus_message& reply)>;

  BusObject(std::string path, std::string interface);
  BusObject(const BusObject&) = delete;
  BusObject& operator=(const BusObject&) = delete;
  ~BusObject();

  /// A property that never changes.
  void constant(const std::string& name, const char* type, BusValue value);
  /// A property of plain type whose changes `announce` tells.
  void property(const std::string& name, const char* type, std::function<BusValue()> value);
  /// A property of any type whose changes `announce` tells; two values are taken for equal when
  /// their `digest` is.
  void property(const std::string& name, const std::string& signature, Append append,
                std::function<BusValue()> digest);
  /// A property of any type whose changes are not told by PropertiesChanged.
  void silentProperty(const std::string& name, const std::string& signature, Append append);
  void method(const std::string& name, const std::string& in, const std::string& out,
              Answer answer);
  void signal(const std::string& name, const std::string& signature);

  /// Puts the object on a bus, borrowed until `disappear`.
  void appear(sd_bus& bus);
  /// Takes it off; call when the connection is lost.
  void disappear();

  /// Tells readers, in one signal, of every property that differs from what was told last.
  void announce();

  /// Sends a signal; `append` adds its arguments. Does nothing while there is no bus.
  void emit(const char* signalName, const Append& append = {}) const;

private:
  struct Property {
    Append append;
    std::function<BusValue()> value; // of properties that are announced
    BusValue told;
  };
  struct Method {
    std::string out;
    Answer answer;
  };

  static int get(sd_bus* bus, const char* path, const char* interface, const char* property,
                 sd_bus_message* reply, void* self, sd_bus_error* error);
  static int call(sd_bus_message* message, void* self, sd_bus_error* error);

  const char* keep(const std::string& text);
  void addProperty(const std::string& name, const std::string& signature, std::uint64_t flags,
                   Property property);

  std::string m_path;
  std::string m_interface;
  std::deque<std::string> m_texts; // what the table points to
  std::vector<sd_bus_vtable> m_table;
  std::map<std::string, Property, std::less<>> m_properties;
  std::map<std::string, Method, std::less<>> m_methods;
  sd_bus* m_bus = nullptr;
  BusSlot m_slot;
};

/// Appends a plain value as this type.
int appendValue(sd_bus_message& message, const char* type, const BusValue& value);

} // namespace tidewell
