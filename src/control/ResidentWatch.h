#pragma once

#include "control/ResidentValues.h"
#include "platform/linux/bus/BusMessages.h"

#include <functional>
#include <optional>
#include <string>

namespace tidewell {

/// Follows the resident on the bus: whether it is there, and its properties. Never starts it.
/// Believes only the owner of its name.
class ResidentWatch {
public:
  /// Begins to ask. Calls `changed` whenever something may have changed. Borrows the bus, whose
  /// timeout for calls decides when the resident counts as silent.
  ResidentWatch(sd_bus& bus, std::function<void()> changed);
  ResidentWatch(ResidentWatch&&) = delete;

  [[nodiscard]] Presence presence() const { return m_presence; }
  [[nodiscard]] const ResidentValues& values() const { return m_values; }

  /// Asks for all values again; the presence is unknown until the answer.
  void ask();

  /// Calls a method of the resident without arguments.
  void call(const char* method, std::function<void(bool isAnswered)> done);

private:
  void ownerFound(sd_bus_message* reply);
  void ownerChanged(sd_bus_message* signal);
  void setOwner(const char* owner);
  void valuesFound(sd_bus_message* reply);
  void valuesChanged(sd_bus_message& signal);
  void show(Presence presence);

  sd_bus& m_bus;
  std::function<void()> m_changed;
  std::string m_owner; // its unique name; empty while there is none
  Presence m_presence = Presence::unknown;
  ResidentValues m_values;
  BusSlot m_owners;
  BusSlot m_changes;
  BusSlot m_question; // for the owner, then for all values
  BusSlot m_call;
};

} // namespace tidewell
