#include "platform/linux/bus/BusObject.h"

#include <cerrno>
#include <utility>

namespace tidewell {

namespace {

/// Entries of the table that sd-bus reads; its macros are written for C.
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

void BusObject::constant(const std::string& name, const char* type, BusValue value) {
  addProperty(name, type, SD_BUS_VTABLE_PROPERTY_CONST,
              {[type, value = std::move(value)](sd_bus_message& reply) {
                 return appendValue(reply, type, value);
               },
               nullptr,
               {}});
}

void BusObject::property(const std::string& name, const char* type,
                         std::function<BusValue()> value) {
  Append append = [type, value](sd_bus_message& reply) {
    return appendValue(reply, type, value());
  };
  property(name, type, std::move(append), std::move(value));
}

void BusObject::property(const std::string& name, const std::string& signature, Append append,
                         std::function<BusValue()> digest) {
  addProperty(name, signature, SD_BUS_VTABLE_PROPERTY_EMITS_CHANGE,
              {std::move(append), std::move(digest), {}});
}

void BusObject::silentProperty(const std::string& name, const std::string& signature,
                               Append append) {
  addProperty(name, signature, 0, {std::move(append), nullptr, {}});
}

void BusObject::method(const std::string& name, const std::string& in, const std::string& out,
                       Answer answer) {
  sd_bus_vtable entry =
      SD_BUS_METHOD(keep(name), keep(in), keep(out), &BusObject::call, SD_BUS_VTABLE_UNPRIVILEGED);
  m_table.push_back(entry);
  m_methods.emplace(name, Method{out, std::move(answer)});
}

void BusObject::signal(const std::string& name, const std::string& signature) {
  sd_bus_vtable entry = SD_BUS_SIGNAL(keep(name), keep(signature), 0);
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
    if (property.value) {
      property.told = property.value();
    }
  }
}

void BusObject::disappear() {
  m_slot.reset();
  m_bus = nullptr;
}

void BusObject::announce() {
  if (m_bus == nullptr) {
    return;
  }
  std::vector<char*> changed;
  for (auto& [name, property] : m_properties) {
    if (!property.value) {
      continue;
    }
    if (BusValue now = property.value(); now != property.told) {
      property.told = std::move(now);
      changed.push_back(const_cast<char*>(name.c_str())); // sd-bus takes what it only reads
    }
  }
  if (!changed.empty()) {
    changed.push_back(nullptr);
    sd_bus_emit_properties_changed_strv(m_bus, m_path.c_str(), m_interface.c_str(), changed.data());
  }
}

void BusObject::emit(const char* signalName, const Append& append) const {
  if (m_bus == nullptr) {
    return;
  }
  const auto message = takeFrom<BusMessage>([&](sd_bus_message** signal) {
    return sd_bus_message_new_signal(m_bus, signal, m_path.c_str(), m_interface.c_str(),
                                     signalName);
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
  const int result = found->second.answer(*message, *reply);
  return result < 0 ? result : sd_bus_send(nullptr, reply.get(), nullptr);
}

const char* BusObject::keep(const std::string& text) { return m_texts.emplace_back(text).c_str(); }

void BusObject::addProperty(const std::string& name, const std::string& signature,
                            std::uint64_t flags, Property property) {
  sd_bus_vtable entry =
      SD_BUS_PROPERTY(keep(name), keep(signature), &BusObject::get, 0, flags & 0xFFFFFFFFU);
  m_table.push_back(entry);
  m_properties.emplace(name, std::move(property));
}

int appendValue(sd_bus_message& message, const char* type, const BusValue& value) {
  return std::visit(
      [&](const auto& plain) {
        using Plain = std::decay_t<decltype(plain)>;
        if constexpr (std::is_same_v<Plain, std::string>) {
          return sd_bus_message_append_basic(&message, *type, plain.c_str());
        } else if constexpr (std::is_same_v<Plain, bool>) {
          const int truth = plain ? 1 : 0; // as wide as sd-bus reads it
          return sd_bus_message_append_basic(&message, *type, &truth);
        } else {
          return sd_bus_message_append_basic(&message, *type, &plain);
        }
      },
      value);
}

} // namespace tidewell
