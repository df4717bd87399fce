#pragma once

#include "base/Observers.h"
#include "platform/linux/bus/BusObject.h"
#include "sampling/NetworkSnapshot.h"
#include "windowRequests/WindowRequest.h"

#include <functional>

namespace tidewell {

class AppSettings;
class AttachedFaces;
class PreferencesStore;
class SessionBus;
struct MonitorState;
struct SamplerState;
struct SpeedTestState;
struct TrackerState;

/// What the resident shows. Borrowed.
struct ResidentSources {
  SamplerState& sampler;
  MonitorState& monitor;
  TrackerState& tracker;
  SpeedTestState& speedTest;
  const AppSettings& settings;
  PreferencesStore& preferences;
};

/// What others can ask of the resident, through the item, its menu or the bus.
struct ResidentActions {
  std::function<void()> quit;
  /// Another instance owns the name on the bus; it has been asked to open its panel.
  std::function<void()> alreadyRunning;
  std::function<void()> runSpeedTest;
  /// Sends a request to the windows' process.
  std::function<void(const WindowRequest& request)> ask;
};

/// The program's own interface on the session bus (docs/dbus.md).
class BusFace {
public:
  /// Requests the name on every new connection. Borrows everything.
  BusFace(SessionBus& bus, const ResidentSources& sources, const ResidentActions& actions,
          AttachedFaces& faces);

  /// Sends the properties that have changed.
  void announce() { m_object.announce(); }

private:
  void describeMeasurements(const ResidentSources& sources);
  void describeConnection(const MonitorState& monitor);
  void describeResults(const ResidentSources& sources);
  void describeMethods();
  void appear(sd_bus& bus);
  void nameAnswered(sd_bus& bus, sd_bus_message* reply);
  void announceSample(const SnapshotList& samples);

  const ResidentActions& m_actions;
  BusObject m_object;
  BusSlot m_call; // RequestName, or the call to the other instance
  Subscription m_samples;
  Subscription m_lost;
  Subscription m_connected;
};

} // namespace tidewell
