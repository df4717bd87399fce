#pragma once

#include <memory>

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

/// Takes what an sd-bus function hands out through a pointer to a pointer.
template <class Owner, class Function> Owner takeFrom(Function&& function) {
  typename Owner::pointer raw = nullptr;
  if (function(&raw) < 0) {
    return nullptr;
  }
  return Owner(raw);
}

} // namespace tidewell
