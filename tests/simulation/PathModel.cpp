#include "PathModel.h"

#include <algorithm>
#include <array>
#include <chrono>

namespace tidewell::test {

namespace {

using std::chrono::seconds;

constexpr std::array<Ticks, 4> retryDelays = {seconds(10), seconds(30), seconds(120), seconds(600)};
constexpr Ticks settlingTime = seconds(5);
constexpr Ticks longestSettling = seconds(30);
constexpr Ticks longestFallingAsleep = seconds(60);

} // namespace

void PathModel::adopt(const ObservedPath& path) {
  m_isAlive = true;
  m_path = path;
  m_isDue = false;
  m_phase = Phase::awake;
  m_retryAt.reset();
  m_failures = 0;
}

void PathModel::becomes(const ObservedPath& path) {
  if (m_path != path) {
    m_path = path;
    m_changed = now();
    m_isDue = m_isAlive && m_phase == Phase::awake;
  }
}

void PathModel::sleeps() {
  m_phase = m_isAlive ? Phase::asleep : Phase::awake;
  m_since = now();
  m_retryAt.reset();
  ++m_nights;
}

void PathModel::wakes() {
  if (m_phase == Phase::asleep) {
    m_phase = Phase::waking;
    m_since = now();
    m_changed = now();
  }
}

void PathModel::lookedUp(bool hasAddress) {
  if (hasAddress) {
    m_retryAt.reset();
    m_failures = 0;
  } else if (m_phase == Phase::awake && !m_retryAt) {
    m_retryAt = now() + retryDelays.at(std::min(m_failures, retryDelays.size() - 1));
    ++m_failures;
  }
}

void PathModel::reports(const PathReport& path) {
  m_findings.require(path == m_path.report, "a report of another path");
  if (m_phase == Phase::asleep && now() - m_since >= longestFallingAsleep + settlingTime) {
    m_phase = Phase::waking; // the second signal never came
    m_since += longestFallingAsleep;
  }
  m_findings.require(m_phase != Phase::asleep, "a report while the machine sleeps");
  const bool isRetry = m_retryAt == now() && !m_isDue;
  if (m_phase == Phase::waking) {
    const Ticks stable = now() - std::max(m_changed, m_since);
    const bool hasSettled = path.isSatisfied && stable == settlingTime;
    m_findings.require(hasSettled || now() - m_since == longestSettling,
                       "a report before the link has settled, or too late");
    m_phase = Phase::awake;
  } else {
    m_findings.require(m_isDue || isRetry, "a report without a reason");
  }
  if (isRetry) {
    ++m_retries;
  } else {
    m_failures = 0;
  }
  m_retryAt.reset();
  m_isDue = false;
}

void PathModel::check() {
  if (!m_isAlive) {
    return;
  }
  m_findings.require(!m_isDue, "a change of the path is not reported");
  m_findings.require(!m_retryAt || *m_retryAt >= now(), "a failed lookup is not repeated");
  const Ticks longest =
      m_phase == Phase::asleep ? longestFallingAsleep + longestSettling : longestSettling;
  m_findings.require(m_phase == Phase::awake || now() - m_since <= longest,
                     "the path is not reported after waking");
}

} // namespace tidewell::test
