#pragma once

#include "app/ChangeCoalescer.h"
#include "base/Observers.h"
#include "platform/linux/BusObject.h"
#include "sampling/NetworkSnapshot.h"

#include <functional>

namespace tidewell {

class AppSettings;
class SessionBus;
struct MonitorState;
struct SamplerState;

/// The program's own interface on the session bus: what it publishes as properties, a signal for
/// each sample, and a few requests. Described in docs/dbus.md. Main thread.
class BusFace {
public:
  /// The name that the program owns.
  static constexpr const char* name = "com.halden.Tidewell";

  /// What the requests do.
  struct Actions {
    std::function<void()> quit;
    /// Another process owns the name: the program runs already.
    std::function<void()> alreadyRunning;
  };

  /// Claims the name whenever there is a bus. Borrows everything.
  BusFace(WorkQueue& main, SessionBus& bus, SamplerState& sampler, MonitorState& monitor,
          const AppSettings& settings, Actions actions);

  /// Tells readers of a change of the preferences that shows.
  void settingsChanged() { m_changes.mark(); }

private:
  void describe(SamplerState& sampler, MonitorState& monitor, const AppSettings& settings);
  void appear(sd_bus& bus);
  void nameAnswered(sd_bus_message& reply) const;
  void announceSample(const SnapshotList& samples);

  Actions m_actions;
  BusObject m_object;
  BusSlot m_nameRequest;
  ChangeCoalescer m_changes;
  Subscription m_samples;
  Subscription m_lost;
  Subscription m_connected;
};

} // namespace tidewell
