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

/// When the process and speed-test tools must run, and what must be published from their output.
class ToolModel {
public:
  ToolModel(const VirtualScheduler& scheduler, Findings& findings)
      : m_scheduler(scheduler), m_findings(findings) {}

  /// A new program, which has started neither.
  void adopt(TrackerState& tracker, SpeedTestState& speedTest);
  void release() {
    m_isAlive = false;
    m_watched.clear(); // the watchdog ends with the program, as does the child
  }

  /// Call it just before the program reads whether it shall track processes. What is in force
  /// already changes nothing.
  void tracks(bool isOn);
  /// The process tool begins and takes this long; if `isEmpty`, its output has no rows.
  void listsProcesses(Ticks takes, bool isEmpty);
  /// A started child is to be terminated four seconds later, even if it has exited.
  void launched(ChildProcess::Id child);
  void terminates(ChildProcess::Id child);

  /// Call it just before a speed test is requested.
  void asksForSpeedTest();
  /// The tool begins, takes this long and gives this result, apart from its time.
  void testsSpeed(Ticks takes, std::optional<SpeedTestResult> result);

  /// Call it when everything that is due has run.
  void checkNothingIsMissing();

  /// The number of timers for children to be terminated.
  [[nodiscard]] std::size_t watchdogs() const { return m_watched.size(); }

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
  Ticks m_freeAt = Ticks::zero();
  std::deque<bool> m_expectedLists; // whether each run's list is empty
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
