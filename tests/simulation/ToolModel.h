#pragma once

#include "Findings.h"
#include "TimerGrid.h"
#include "platform/ChildProcess.h"
#include "processes/TrackerState.h"
#include "speedtest/SpeedTestState.h"

#include <cstddef>
#include <deque>
#include <optional>
#include <utility>
#include <vector>

namespace tidewell::test {

/// When the tools for processes and for the speed test must be run, and what becomes of what they
/// print.
class ToolModel {
public:
  ToolModel(const VirtualScheduler& scheduler, Findings& findings)
      : m_scheduler(scheduler), m_findings(findings) {}

  /// A new program that has started neither.
  void adopt(TrackerState& tracker, SpeedTestState& speedTest);
  void release() {
    m_isAlive = false;
    m_watched.clear(); // the watch ends with the program, and so does the child
  }

  /// Just before tracking is started (beside what runs already), or stopped.
  void startsTracking();
  void stopsTracking() { m_tracking.reset(); }
  /// The process tool begins, for so long; it prints nothing that could be listed when `isEmpty`.
  void listsProcesses(Ticks takes, bool isEmpty);
  /// A child that was started is to be terminated four seconds later, whether it runs or not.
  void launched(ChildProcess::Id child);
  void terminates(ChildProcess::Id child);

  /// Just before a speed test is asked for.
  void asksForSpeedTest();
  /// The tool begins, for so long, and will lead to this result, its time aside.
  void testsSpeed(Ticks takes, std::optional<SpeedTestResult> result);

  /// To be called when everything that is due has run.
  void checkNothingIsMissing();

  /// Timers that a second start left running, and those of children to be terminated.
  [[nodiscard]] std::size_t leftTimers() const { return m_left.size() + m_watched.size(); }

  [[nodiscard]] int lists() const { return m_lists; }
  [[nodiscard]] int tests() const { return m_tests; }

private:
  void hearsProcesses(const std::vector<ProcessUsage>& processes);
  void hearsRunning(bool isRunning);
  void hearsResult(const std::optional<SpeedTestResult>& result);

  const VirtualScheduler& m_scheduler;
  Findings& m_findings;
  bool m_isAlive = false;
  bool m_attaching = false;

  std::optional<TimerGrid> m_tracking;
  std::vector<TimerGrid> m_left;
  Ticks m_freeAt = Ticks::zero();
  std::deque<bool> m_expectedLists; // for each run of the tool: whether the list is empty
  std::deque<std::pair<ChildProcess::Id, Ticks>> m_watched;
  int m_lists = 0;

  enum class Test { none, asked, running, finishing };
  Test m_test = Test::none;
  std::optional<SpeedTestResult> m_expectedResult;
  std::optional<Ticks> m_testEnds;
  int m_tests = 0;
  std::vector<Subscription> m_subscriptions;
};

} // namespace tidewell::test
