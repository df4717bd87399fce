#include "platform/linux/bus/BusObject.h"

#include <cerrno>
#include <utility>

namespace tidewell {
namespace {

// Entries of the table that sd-bus reads; its macros are written for C.
sd_bus_vtable tableStart() {
  sd_bus_vtable entry = SD_BUS_VTABLE_START(0);
  return entry;
}

sd_bus_vtable tableEnd() {
  sd_bus_vtable entry = SD_BUS_VTABLE_END;
  return entry;
}

} // namespace

BusObject::BusObject(std::string path, std::string interface)
    : m_path(std::move(path)), m_interface(std::move(interface)), m_table{tableStart()} {}

BusObject::~BusObject() = default;

void BusObject::silentProperty(const std::string& name, const std::string& signature,
                               Append append) {
  addProperty(name, 0, {signature, std::move(append), nullptr, nullptr});
}

void BusObject::method(const std::string& name, const std::string& in, const std::string& out,
                       Answer answer) {
  sd_bus_vtable entry =
      SD_BUS_METHOD(keep(name), keep(in), keep(out), &BusObject::call, SD_BUS_VTABLE_UNPRIVILEGED);
  m_table.push_back(entry);
  m_methods.emplace(name, std::move(answer));
}

void BusObject::signal(const std::string& name, const std::string& signature,
                       const std::vector<std::string>& arguments) {
  std::string names; // each ends with a zero
  for (const std::string& argument : arguments) {
    names += argument + '\0';
  }
  sd_bus_vtable entry = SD_BUS_SIGNAL_WITH_NAMES(keep(name), keep(signature), keep(names), 0);
  m_table.push_back(entry);
}

void BusObject::appear(sd_bus& bus) {
  if (m_table.back().type != _SD_BUS_VTABLE_END) {
    m_table.push_back(tableEnd());
  }
  m_bus = &bus;
  m_slot = takeFrom<BusSlot>([&](sd_bus_slot** slot) {
    return sd_bus_add_object_vtable(&bus, slot, m_path.c_str(), m_interface.c_str(), m_table.data(),
                                    this);
  });
  for (auto& [name, property] : m_properties) {
    if (property.update) {
      property.update();
    }
  }
}

void BusObject::disappear() {
  m_slot.reset();
  m_bus = nullptr;
}

void BusObject::announce() {
  std::vector<const decltype(m_properties)::value_type*> changed;
  for (const auto& entry : m_properties) {
    if (m_bus != nullptr && entry.second.update && entry.second.update()) {
      changed.push_back(&entry);
    }
  }
  if (changed.empty()) {
    return;
  }
  send(propertiesInterface, "PropertiesChanged", [&](sd_bus_message& signal) {
    BusWriter writer(signal);
    writer.add("s", m_interface.c_str()).open('a', "{sv}");
    for (const auto* entry : changed) {
      const auto& property = entry->second;
      writer.open('e', "sv").add("s", entry->first.c_str()).open('v', property.signature.c_str());
      writer.step([&] { return property.appendUpdated(signal); }).close().close();
    }
    return writer.close().add("as", 0).result();
  });
}

void BusObject::emit(const char* signalName, const Append& append) const {
  send(m_interface.c_str(), signalName, append);
}

void BusObject::send(const char* interface, const char* signalName, const Append& append) const {
  if (m_bus == nullptr) {
    return;
  }
  const auto message = takeFrom<BusMessage>([&](sd_bus_message** signal) {
    return sd_bus_message_new_signal(m_bus, signal, m_path.c_str(), interface, signalName);
  });
  if (message && (!append || append(*message) >= 0)) {
    sd_bus_send(m_bus, message.get(), nullptr);
  }
}

int BusObject::get(sd_bus* /*bus*/, const char* /*path*/, const char* /*interface*/,
                   const char* property, sd_bus_message* reply, void* self,
                   sd_bus_error* /*error*/) {
  const auto& object = *static_cast<BusObject*>(self);
  const auto found = object.m_properties.find(std::string_view(property));
  return found == object.m_properties.end() ? -ENOENT : found->second.append(*reply);
}

int BusObject::call(sd_bus_message* message, void* self, sd_bus_error* /*error*/) {
  auto& object = *static_cast<BusObject*>(self);
  const auto found = object.m_methods.find(std::string_view(sd_bus_message_get_member(message)));
  if (found == object.m_methods.end()) {
    return -ENOENT;
  }
  const auto reply = takeFrom<BusMessage>(
      [&](sd_bus_message** made) { return sd_bus_message_new_method_return(message, made); });
  if (!reply) {
    return -ENOMEM;
  }
  const int result = found->second(*message, *reply);
  return result < 0 ? result : sd_bus_send(nullptr, reply.get(), nullptr);
}

const char* BusObject::keep(const std::string& text) { return m_texts.emplace_back(text).c_str(); }

void BusObject::addProperty(const std::string& name, std::uint64_t flags, Property property) {
  sd_bus_vtable entry = SD_BUS_PROPERTY(keep(name), keep(property.signature), &BusObject::get, 0,
                                        flags & 0xFFFFFFFFU);
  m_table.push_back(entry);
  m_properties.emplace(name, std::move(property));
}

} // namespace tidewell
