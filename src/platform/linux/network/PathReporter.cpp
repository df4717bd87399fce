#include "platform/linux/network/PathReporter.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tidewell {
namespace {

// A portal or a slow uplink is often over soon; a blocked endpoint never is.
constexpr std::array<Seconds, 4> retryDelays = {10.0, 30.0, 120.0, 600.0};

} // namespace

PathReporter::PathReporter(WorkQueue& queue, std::function<void(const PathReport&)> report)
    : m_queue(queue), m_report(std::move(report)) {}

void PathReporter::observe(ObservedPath path) {
  if (m_path == path) {
    return;
  }
  m_path = std::move(path);
  if (m_phase == Phase::awake) {
    reportNew();
  } else if (m_phase == Phase::waking) {
    settle();
  }
}

void PathReporter::setSleeping(bool isSleeping) {
  if (isSleeping) {
    m_phase = Phase::fallingAsleep;
    m_retry.reset();
    m_settling.reset();
    m_limit = after(longestFallingAsleep, &PathReporter::wake);
  } else if (m_phase == Phase::fallingAsleep) {
    wake();
  }
}

void PathReporter::lookedUp(bool hasAddress) {
  if (hasAddress) {
    m_retry.reset();
    m_failures = 0;
  } else if (m_phase == Phase::awake && !m_retry && m_reported) {
    const std::size_t place = std::min(m_failures++, retryDelays.size() - 1);
    m_retry = after(retryDelays.at(place), &PathReporter::report);
  }
}

std::unique_ptr<Timer> PathReporter::after(Seconds delay, void (PathReporter::*action)()) {
  return m_queue.repeat(delay, 0.0, [this, action] { (this->*action)(); });
}

void PathReporter::wake() {
  m_phase = Phase::waking;
  m_limit = after(longestSettling, &PathReporter::settled);
  settle();
}

void PathReporter::settle() {
  const bool isSatisfied = m_path && m_path->report.isSatisfied;
  m_settling = isSatisfied ? after(settlingTime, &PathReporter::settled) : nullptr;
}

void PathReporter::settled() {
  m_phase = Phase::awake;
  m_limit.reset();
  m_settling.reset();
  // The machine may be elsewhere now, though its path looks the same.
  reportNew();
}

void PathReporter::reportNew() {
  m_failures = 0;
  report();
}

void PathReporter::report() {
  m_retry.reset();
  if (m_path) {
    m_reported = m_path->report;
    m_report(*m_reported);
  }
}

} // namespace tidewell
