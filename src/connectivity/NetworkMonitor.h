#pragma once

#include "base/Scheduler.h"
#include "connectivity/ConnectionDetails.h"
#include "connectivity/MonitorState.h"
#include "platform/PathMonitor.h"

#include <memory>

namespace tidewell {

struct Platform;

/// Publishes whether the machine is online, over which kind of link, and the details.
///
/// Watches for its whole lifetime. Handles path reports one at a time on a serial queue of its own,
/// which waits for the lookups. The three values of a report are published together.
class NetworkMonitor : public MonitorState, public std::enable_shared_from_this<NetworkMonitor> {
public:
  /// Makes a monitor and starts watching. Borrows the platform.
  [[nodiscard]] static std::shared_ptr<NetworkMonitor> make(const Platform& platform);

  /// Used by `make`.
  explicit NetworkMonitor(const Platform& platform);

private:
  void begin(PathMonitor& paths);
  void pathChanged(const PathReport& report);
  [[nodiscard]] Async<> fetchAtStart();
  [[nodiscard]] Async<> fetchAndPublish(bool connected, ConnectionInfo::InterfaceType type);

  WorkQueue& m_main;
  ConnectionDetails m_details;
  std::unique_ptr<WorkQueue> m_queue; // its tasks use all members above
  std::unique_ptr<PathWatch> m_watch;
};

} // namespace tidewell
