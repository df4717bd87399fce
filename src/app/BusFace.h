#pragma once

#include "app/ChangeCoalescer.h"
#include "app/ResidentSources.h"
#include "base/Observers.h"
#include "platform/linux/bus/BusObject.h"
#include "sampling/NetworkSnapshot.h"
#include "windowRequests/WindowRequest.h"

#include <functional>

namespace tidewell {

class SessionBus;

/// The program's own interface on the session bus: what it publishes as properties, a signal for
/// each sample, and a few requests. Described in docs/dbus.md. Main thread.
class BusFace {
public:
  /// The name that the program owns.
  static constexpr const char* name = "com.halden.Tidewell";

  /// What the requests do.
  struct Actions {
    std::function<void()> quit;
    /// Another process owns the name, so the program runs already; it has been asked for its panel.
    std::function<void()> alreadyRunning;
    std::function<void()> runSpeedTest;
    std::function<void(WindowRequest::Kind window)> openWindow;
  };

  /// Claims the name whenever there is a bus. Borrows everything.
  BusFace(WorkQueue& main, SessionBus& bus, const ResidentSources& sources, Actions actions);

  /// Tells readers of a change of the preferences that shows.
  void settingsChanged() { m_changes.mark(); }

private:
  void describeMeasurements(const ResidentSources& sources);
  void describeConnection(MonitorState& monitor);
  void describeResults(const ResidentSources& sources);
  void describeRequests();
  void watch(const ResidentSources& sources);
  void appear(sd_bus& bus);
  void nameAnswered(sd_bus_message& reply);
  void announceSample(const SnapshotList& samples);

  Actions m_actions;
  BusObject m_object;
  sd_bus* m_bus = nullptr;
  BusSlot m_call; // the name request, or the request to the instance that runs
  ChangeCoalescer m_changes;
  Subscription m_samples;
  Subscription m_lost;
  Subscription m_connected;
};

} // namespace tidewell
