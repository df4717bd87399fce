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
/// Watches from its making to its end. Path reports and lookups run on a serial queue of its own,
/// one after the other in the order of the reports; results are published on the main thread, the
/// three values of one report together.
class NetworkMonitor : public MonitorState, public std::enable_shared_from_this<NetworkMonitor> {
public:
  /// Makes a monitor that watches; it dies on the main thread. Borrows the platform. Main thread.
  [[nodiscard]] static std::shared_ptr<NetworkMonitor> make(const Platform& platform);

  /// For `make`.
  explicit NetworkMonitor(const Platform& platform);

private:
  void begin(PathMonitor& paths);
  void pathChanged(const PathReport& report);
  void fetchAndPublish(bool connected, ConnectionInfo::InterfaceType type);

  WorkQueue& m_main;
  ConnectionDetails m_details; // used on m_queue alone
  std::unique_ptr<WorkQueue> m_queue;
  std::unique_ptr<PathWatch> m_watch; // after the queue, so that it is cancelled first
};

} // namespace tidewell
