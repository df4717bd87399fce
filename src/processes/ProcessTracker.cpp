#include "processes/ProcessTracker.h"

#include "base/IfMemoryAllows.h"
#include "base/Utf8.h"
#include "platform/ChildProcess.h"
#include "platform/Platform.h"
#include "processes/NettopOutput.h"

#include <string_view>
#include <utility>

namespace tidewell {

namespace {

constexpr const char* workQueueLabel = "com.halden.tidewell.process";
constexpr Seconds firstRefresh = 2.0;

// The tool measures for a second; one that takes four has hung.
constexpr Seconds watchdog = 4.0;

} // namespace

ProcessTracker::ProcessTracker(const Platform& platform)
    : m_main(platform.scheduler.main()), m_background(platform.scheduler.background()),
      m_children(platform.children),
      m_workQueue(platform.scheduler.makeSerialQueue(workQueueLabel)) {}

void ProcessTracker::start(Seconds interval) {
  if (m_timer) {
    m_earlierTimers.push_back(std::move(m_timer));
  }
  m_timer = m_workQueue->repeat(firstRefresh, interval, [weak = weak_from_this()] {
    if (const auto self = weak.lock()) {
      self->refresh();
    }
  });
}

void ProcessTracker::stop() { m_timer.reset(); }

void ProcessTracker::refresh() {
  m_main.post([weak = weak_from_this(), rows = parseNettop()] {
    if (const auto self = weak.lock()) {
      self->processes.set(rows);
    }
  });
}

std::vector<ProcessUsage> ProcessTracker::parseNettop() {
  // Unconditional: whether the child is still there when the watchdog fires is not asked.
  const auto startWatchdog = [this](ChildProcess::Id child) {
    m_background.postAfter(watchdog,
                           [&children = m_children, child] { children.terminate(child); });
  };
  std::vector<ProcessUsage> rows;
  const auto output = m_children.run(
      "/usr/bin/nettop", {"-P", "-L", "1", "-J", "bytes_in,bytes_out", "-x"}, startWatchdog);
  // Lists that memory does not suffice for count as none.
  const bool isParsed = ifMemoryAllows([&] {
    if (output && isUtf8(*output)) {
      rows = parseNettopOutput(*output);
    }
  });
  return isParsed ? rows : std::vector<ProcessUsage>();
}

} // namespace tidewell
