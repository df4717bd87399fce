#pragma once

#include "base/Observers.h"
#include "platform/linux/bus/BusMessages.h"

#include <cstddef>
#include <functional>
#include <map>
#include <string>

namespace tidewell {

class BusObject;
class SessionBus;

/// The programs that show the figures themselves, such as an extension of the desktop's shell. They
/// attach and detach through the bus; a program that leaves the bus is detached.
class AttachedFaces {
public:
  /// More programs than this are refused.
  static constexpr std::size_t most = 16;
  /// The longest kind in bytes.
  static constexpr std::size_t longestKind = 64;

  /// Borrows the bus. `changed` is called when the first face attaches and after the last one has
  /// gone.
  AttachedFaces(SessionBus& bus, std::function<void()> changed);

  /// Adds the methods to an object that is on this bus.
  void describe(BusObject& object);

  [[nodiscard]] bool any() const { return !m_faces.empty(); }

private:
  struct Face {
    std::string kind;
    BusSlot gone;
  };

  int attach(sd_bus_message& call);
  void detach(const std::string& program);
  int appendKinds(sd_bus_message& message) const;

  SessionBus& m_bus;
  std::function<void()> m_changed;
  std::map<std::string, Face> m_faces; // by the program's unique name on the bus
  Subscription m_lost;
};

} // namespace tidewell
