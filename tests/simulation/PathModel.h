#pragma once

#include "Findings.h"
#include "base/Ticks.h"
#include "platform/linux/network/PathReporter.h"

#include <cstddef>
#include <optional>

namespace tidewell::test {

/// When a path must be reported: at once when anything about it changes, but not from falling
/// asleep until the link has settled after waking; and again while lookups of the public address
/// fail.
class PathModel {
public:
  PathModel(const VirtualScheduler& scheduler, Findings& findings)
      : m_scheduler(scheduler), m_findings(findings) {}

  /// A new program, to which this path has been reported.
  void adopt(const ObservedPath& path);
  void release() { m_isAlive = false; }

  /// Call them before the program learns of it.
  void becomes(const ObservedPath& path);
  void sleeps();
  void wakes();
  /// A lookup has ended while the program believed the path satisfied.
  void lookedUp(bool hasAddress);

  /// The program reports a path.
  void reports(const PathReport& path);

  /// Call it when everything that is due has run.
  void check();

  /// Whether the details of the present path have been reported.
  [[nodiscard]] bool isUpToDate() const { return m_isAlive && m_phase == Phase::awake; }
  [[nodiscard]] int nights() const { return m_nights; }
  [[nodiscard]] int retries() const { return m_retries; }

private:
  enum class Phase { awake, asleep, waking };

  [[nodiscard]] Ticks now() const { return m_scheduler.now(); }

  const VirtualScheduler& m_scheduler;
  Findings& m_findings;
  bool m_isAlive = false;
  ObservedPath m_path;
  bool m_isDue = false; // a report of this path
  Phase m_phase = Phase::awake;
  Ticks m_since = Ticks::zero();   // of the phase
  Ticks m_changed = Ticks::zero(); // the path
  std::optional<Ticks> m_retryAt;
  std::size_t m_failures = 0;
  int m_nights = 0;
  int m_retries = 0;
};

} // namespace tidewell::test
