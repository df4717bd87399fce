#pragma once

#include "base/Scheduler.h"
#include "connectivity/ConnectionDetails.h"
#include "connectivity/MonitorState.h"
#include "platform/PathMonitor.h"

#include <memory>

namespace tidewell {

struct Platform;

/// Says whether the machine is online, over which kind of link and with which details.
///
/// Watches from its making to its end. A serial queue of its own takes the path reports and waits
/// for the lookups, one report after the other; the three values of a report are published
/// together.
class NetworkMonitor : public MonitorState, public std::enable_shared_from_this<NetworkMonitor> {
public:
  /// Makes a monitor that watches. Borrows the platform.
  [[nodiscard]] static std::shared_ptr<NetworkMonitor> make(const Platform& platform);

  /// For `make`.
  explicit NetworkMonitor(const Platform& platform);

private:
  void begin(PathMonitor& paths);
  void pathChanged(const PathReport& report);
  [[nodiscard]] Async<> fetchAtStart();
  [[nodiscard]] Async<> fetchAndPublish(bool connected, ConnectionInfo::InterfaceType type);

  WorkQueue& m_main;
  ConnectionDetails m_details;
  std::unique_ptr<WorkQueue> m_queue; // last but the watch: its tasks use all that is above
  std::unique_ptr<PathWatch> m_watch;
};

} // namespace tidewell
