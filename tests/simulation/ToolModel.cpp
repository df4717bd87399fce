#include "ToolModel.h"

#include <algorithm>
#include <chrono>
#include <functional>

namespace tidewell::test {

namespace {

constexpr double firstList = 2.0;
constexpr double listInterval = 10.0;
constexpr Ticks watchdog = std::chrono::seconds(4);
constexpr std::size_t mostProcesses = 10;

} // namespace

void ToolModel::adopt(TrackerState& tracker, SpeedTestState& speedTest) {
  m_isAlive = true;
  m_tracking.reset();
  m_freeAt = Ticks::zero();
  m_expectedLists.clear();
  m_test = Test::none;
  m_attaching = true;
  m_subscriptions.clear();
  const auto on = [this](auto& published, auto hears) {
    m_subscriptions.push_back(published.subscribe([this, hears](const auto& value) {
      if (!m_attaching) {
        m_findings.require(m_isAlive, "a publication of a tool's output after the end");
        (this->*hears)(value);
      }
    }));
  };
  on(tracker.processes, &ToolModel::hearsProcesses);
  on(speedTest.isRunning, &ToolModel::hearsRunning);
  on(speedTest.lastResult, &ToolModel::hearsResult);
  m_attaching = false;
}

void ToolModel::tracks(bool isOn) {
  if (!isOn) {
    m_tracking.reset();
  } else if (!m_tracking) {
    m_tracking.emplace(m_scheduler.now(), firstList, listInterval);
  }
}

void ToolModel::listsProcesses(Ticks takes, bool isEmpty) {
  m_findings.require(m_isAlive, "processes are listed after the end");
  const Ticks now = m_scheduler.now();
  const bool isDue = m_tracking && m_tracking->mayFire(now, m_freeAt);
  m_findings.require(isDue, "processes are listed at the wrong moment");
  if (isDue) {
    m_tracking->fire(now);
  }
  m_freeAt = now + takes;
  m_expectedLists.push_back(isEmpty);
}

void ToolModel::launched(ChildProcess::Id child) {
  m_watched.emplace_back(child, m_scheduler.now() + watchdog);
}

void ToolModel::terminates(ChildProcess::Id child) {
  const bool isExpected =
      !m_watched.empty() && m_watched.front() == std::pair(child, m_scheduler.now());
  m_findings.require(isExpected, "a child is terminated that should not be, or not now", child);
  if (isExpected) {
    m_watched.pop_front();
  }
}

void ToolModel::hearsProcesses(const std::vector<ProcessUsage>& processes) {
  ++m_lists;
  m_findings.require(!m_expectedLists.empty(), "a list of processes that was not made");
  if (m_expectedLists.empty()) {
    return;
  }
  m_findings.require(m_expectedLists.front() == processes.empty(),
                     "the processes, rows:", processes.size());
  m_expectedLists.pop_front();
  double shares = 0.0;
  for (const ProcessUsage& row : processes) {
    shares += row.usagePercent;
    m_findings.require(row.totalBytes == row.downloadBytesPerSec + row.uploadBytesPerSec &&
                           row.totalBytes > 0 && row.usagePercent >= 0.0 && !row.name.empty(),
                       "a row of the processes", row.name);
  }
  m_findings.require(
      processes.size() <= mostProcesses && shares < 1.0 + 1e-9 &&
          std::ranges::is_sorted(processes, std::ranges::greater{}, &ProcessUsage::totalBytes),
      "at most ten processes, heaviest first, shares", shares);
}

void ToolModel::asksForSpeedTest() {
  if (m_test == Test::none) {
    m_test = Test::asked;
    m_testEnds.reset();
  }
}

void ToolModel::testsSpeed(Ticks takes, std::optional<SpeedTestResult> result) {
  m_findings.require(m_isAlive && m_test == Test::running && !m_testEnds,
                     "a speed test that is not due");
  m_testEnds = m_scheduler.now() + takes;
  m_expectedResult = result;
}

void ToolModel::hearsRunning(bool isRunning) {
  m_findings.require(m_test == (isRunning ? Test::asked : Test::finishing),
                     "the speed test's begin or end");
  m_test = isRunning ? Test::running : Test::none;
}

void ToolModel::hearsResult(const std::optional<SpeedTestResult>& result) {
  m_findings.require(m_test == Test::running, "a result without a test");
  m_test = Test::finishing;
  ++m_tests;
  const bool isSame = result.has_value() == m_expectedResult.has_value() &&
                      (!result || (result->downloadMbps == m_expectedResult->downloadMbps &&
                                   result->uploadMbps == m_expectedResult->uploadMbps &&
                                   result->responsiveness == m_expectedResult->responsiveness));
  m_findings.require(isSame, "the speed test's result");
}

void ToolModel::checkNothingIsMissing() {
  const Ticks now = m_scheduler.now();
  m_findings.require(m_watched.empty() || m_watched.front().second > now,
                     "a child is not terminated");
  const bool isTesting = m_test == Test::none || (m_testEnds && *m_testEnds > now);
  m_findings.require(!m_isAlive || isTesting, "a speed test does not begin, or does not end");
  if (!m_isAlive || now < m_freeAt) {
    return;
  }
  m_findings.require(!m_tracking || m_tracking->next() > now, "a list of the processes is missing");
  m_findings.require(m_expectedLists.empty(), "a publication of the processes is missing");
}

} // namespace tidewell::test
