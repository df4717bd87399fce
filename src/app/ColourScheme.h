#pragma once

#include "base/Observers.h"
#include "platform/linux/bus/BusMessages.h"

#include <functional>

namespace tidewell {

class SessionBus;

/// Whether the user prefers light colours, as the settings of the desktop's portal say. Never
/// starts the portal. Costs nothing until the setting changes.
class ColourScheme {
public:
  /// Borrows the bus. `changed` is called when `isLight` changes.
  ColourScheme(SessionBus& bus, std::function<void()> changed);

  /// False without a portal or a preference.
  [[nodiscard]] bool isLight() const { return m_isLight; }

private:
  void appear(sd_bus& bus);
  void disappear();
  void fetch(sd_bus& bus);
  void set(bool isLight);

  std::function<void()> m_changed;
  bool m_isLight = false;
  BusSlot m_owner;
  BusSlot m_setting;
  BusSlot m_call;
  Subscription m_lost;
  Subscription m_connected;
};

} // namespace tidewell
