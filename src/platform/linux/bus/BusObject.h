#pragma once

#include "platform/linux/bus/BusMessages.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tidewell {

/// One interface of one object on a bus. All members are added before the object first appears.
class BusObject {
public:
  /// Appends a value to a message; negative on failure.
  using Append = std::function<int(sd_bus_message& message)>;
  /// Appends a value of this C++ type to a message; negative on failure.
  template <class Value>
  using AppendValue = std::function<int(sd_bus_message& message, const Value& value)>;
  /// Answers a call: appends to `reply`, or returns a negative errno, which is sent to the caller.
  using Answer = std::function<int(sd_bus_message& call, sd_bus_message& reply)>;

  BusObject(std::string path, std::string interface);
  ~BusObject();

  /// A property that never changes. `value` is what sd-bus appends for this type.
  template <class Value> void constant(const std::string& name, const char* type, Value value) {
    addProperty(name, SD_BUS_VTABLE_PROPERTY_CONST,
                {type,
                 [type, value](sd_bus_message& message) {
                   return sd_bus_message_append(&message, type, value);
                 },
                 nullptr, nullptr});
  }
  /// A property whose changes `announce` sends.
  template <class Value>
  void property(const std::string& name, const std::string& signature, std::function<Value()> read,
                AppendValue<Value> append) {
    const auto announced = std::make_shared<Value>();
    addProperty(
        name, SD_BUS_VTABLE_PROPERTY_EMITS_CHANGE,
        {signature, [read, append](sd_bus_message& message) { return append(message, read()); },
         [read, announced] {
           Value now = read();
           const bool isNew = now != *announced;
           *announced = std::move(now);
           return isNew;
         },
         [append, announced](sd_bus_message& message) { return append(message, *announced); }});
  }
  /// A property whose changes are not announced by PropertiesChanged.
  void silentProperty(const std::string& name, const std::string& signature, Append append);
  void method(const std::string& name, const std::string& in, const std::string& out,
              Answer answer);
  /// `arguments`: their names, for introspection; none or one for each argument.
  void signal(const std::string& name, const std::string& signature,
              const std::vector<std::string>& arguments = {});

  /// Registers the object on a bus, borrowed until `disappear`.
  void appear(sd_bus& bus);
  /// Removes it; call when the connection is lost.
  void disappear();

  /// Sends, in one PropertiesChanged, every property that differs from the value announced last.
  void announce();

  /// Sends a signal; `append` adds its arguments. Does nothing while there is no bus.
  void emit(const char* signalName, const Append& append = {}) const;

private:
  struct Property {
    std::string signature;
    Append append; // the current value
    // Of properties that are announced: reads the value and returns whether it is another one than
    // before; appends the value read last.
    std::function<bool()> update;
    Append appendUpdated;
  };

  static int get(sd_bus* bus, const char* path, const char* interface, const char* property,
                 sd_bus_message* reply, void* self, sd_bus_error* error);
  static int call(sd_bus_message* message, void* self, sd_bus_error* error);

  const char* keep(const std::string& text);
  void addProperty(const std::string& name, std::uint64_t flags, Property property);
  void send(const char* interface, const char* signalName, const Append& append) const;

  std::string m_path;
  std::string m_interface;
  std::deque<std::string> m_texts; // pointed to by the table
  std::vector<sd_bus_vtable> m_table;
  std::map<std::string, Property, std::less<>> m_properties;
  std::map<std::string, Answer, std::less<>> m_methods;
  sd_bus* m_bus = nullptr;
  BusSlot m_slot;
};

} // namespace tidewell
