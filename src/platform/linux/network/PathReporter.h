#pragma once

#include "base/Scheduler.h"
#include "platform/PathMonitor.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tidewell {

/// A path and what the details of its connection depend on.
struct ObservedPath {
  PathReport report;
  int interfaceIndex = 0;
  std::string interfaceName;
  std::string sourceIPv4;
  std::string gateway;
  std::vector<std::string> dnsServers;
  int dnsChanges = 0; // counts those that `dnsServers` does not show

  friend bool operator==(const ObservedPath&, const ObservedPath&) = default;
};

/// Decides when a path is reported: at every change, also of one that only the details show, and
/// again while the public address is unknown.
///
/// Network managers take the links down before the machine sleeps. From then on nothing is reported
/// until the link has settled after waking.
class PathReporter {
public:
  /// How long a path must stay satisfied and the same after waking. Some drivers notice only
  /// seconds later that their network is gone.
  static constexpr Seconds settlingTime = 5.0;
  /// How long after waking a path that does not settle is reported as it is. Joining a wireless
  /// network takes up to some twenty seconds.
  static constexpr Seconds longestSettling = 30.0;
  /// How long the machine may run after it was about to sleep. The login manager waits five seconds
  /// for programs that delay the sleep; past this limit its second signal was lost.
  static constexpr Seconds longestFallingAsleep = 60.0;

  /// Borrows the queue of its timers. `report` is called with the path of the moment.
  PathReporter(WorkQueue& queue, std::function<void(const PathReport&)> report);

  /// The path as it is now, whether it changed or not.
  void observe(ObservedPath path);

  /// The machine is about to sleep, or awake again.
  void setSleeping(bool isSleeping);

  /// A lookup of the public address has ended. After a failure the path is reported again: after
  /// 10 s, 30 s, 2 min, then every 10 min until a lookup succeeds or the path changes.
  void lookedUp(bool hasAddress);

  /// The path observed last; nullopt before the first one.
  [[nodiscard]] const std::optional<ObservedPath>& path() const { return m_path; }
  /// The report made last; nullopt before the first one.
  [[nodiscard]] const std::optional<PathReport>& reported() const { return m_reported; }

private:
  enum class Phase { awake, fallingAsleep, waking };

  [[nodiscard]] std::unique_ptr<Timer> after(Seconds delay, void (PathReporter::*action)());
  void wake();
  void settle();
  void settled();
  void reportNew();
  void report();

  WorkQueue& m_queue;
  std::function<void(const PathReport&)> m_report;
  std::optional<ObservedPath> m_path;
  std::optional<PathReport> m_reported;
  Phase m_phase = Phase::awake;
  std::unique_ptr<Timer> m_limit; // of a phase that is not `awake`
  std::unique_ptr<Timer> m_settling;
  std::unique_ptr<Timer> m_retry;
  std::size_t m_failures = 0; // lookups on this path that led to another
};

} // namespace tidewell
