#pragma once

#include "Findings.h"
#include "base/Ticks.h"
#include "connectivity/MonitorState.h"
#include "platform/PathMonitor.h"

#include <deque>
#include <optional>
#include <vector>

namespace tidewell::test {

/// The publications required of a connectivity monitor: once the initial details, then for each
/// path report, in order, the three values together. Each in time: a lookup takes at most three
/// seconds.
class ConnectivityModel {
public:
  ConnectivityModel(const VirtualScheduler& scheduler, Findings& findings)
      : m_scheduler(scheduler), m_findings(findings) {}

  /// A new monitor, with the path already reported to it, if any.
  void adopt(MonitorState& monitor, const std::optional<PathReport>& path);
  void release() { m_monitor = nullptr; }

  /// The path is reported.
  void reports(const PathReport& path);

  /// Whether the details of everything reported have been published.
  [[nodiscard]] bool isComplete() const {
    return m_monitor != nullptr && !m_awaitsFirstDetails && m_expected.empty();
  }

  /// Call it when everything that is due has run.
  void checkNothingIsMissing();

private:
  struct Expected {
    bool isConnected;
    ConnectionInfo::InterfaceType type;
    Ticks deadline;
  };

  void watch(MonitorState& monitor);
  void hearsConnectivity(bool isConnected);
  void hearsType(ConnectionInfo::InterfaceType type);
  void hearsDetails(const ConnectionInfo& info);
  void takeTurn(int place);

  const VirtualScheduler& m_scheduler;
  Findings& m_findings;
  MonitorState* m_monitor = nullptr;
  Ticks m_deadline = Ticks::zero(); // of the newest lookup
  bool m_awaitsFirstDetails = false;
  std::deque<Expected> m_expected;
  int m_place = 0;
  bool m_attaching = false;
  std::vector<Subscription> m_subscriptions;
};

} // namespace tidewell::test
