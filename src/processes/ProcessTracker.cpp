#include "processes/ProcessTracker.h"

#include "base/IfMemoryAllows.h"
#include "base/Utf8.h"
#include "platform/ChildProcess.h"
#include "platform/Platform.h"
#include "processes/NettopOutput.h"

#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace tidewell {
namespace {

constexpr const char* trackerQueueLabel = "com.halden.tidewell.process";
constexpr Seconds firstRefresh = 2.0;

// The tool measures for one second; after four it has hung.
constexpr Seconds watchdog = 4.0;

} // namespace

ProcessTracker::ProcessTracker(const Platform& platform)
    : m_main(platform.scheduler.main()), m_background(platform.scheduler.background()),
      m_children(platform.children),
      m_workQueue(platform.scheduler.makeSerialQueue(trackerQueueLabel)) {}

void ProcessTracker::start(Seconds interval) {
  if (m_timer) {
    m_earlierTimers.push_back(std::move(m_timer));
  }
  m_timer = m_workQueue->repeat(firstRefresh, interval, [this] { return refresh(); });
}

void ProcessTracker::stop() { m_timer.reset(); }

Async<> ProcessTracker::refresh() {
  const std::vector<ProcessUsage> rows = co_await parseNettop();
  m_main.post([weak = weak_from_this(), rows] {
    if (const auto self = weak.lock()) {
      self->processes.set(rows);
    }
  });
}

Async<std::vector<ProcessUsage>> ProcessTracker::parseNettop() {
  // Unconditional: does nothing if the child has exited.
  const std::function<void(ChildProcess::Id)> startWatchdog = [this](ChildProcess::Id child) {
    m_background.postAfter(watchdog,
                           [&children = m_children, child] { children.terminate(child); });
  };
  const ToolCall traffic{Tool::processTraffic, {}, 0.0};
  const std::optional<std::string> output = co_await m_children.run(traffic, startWatchdog);
  std::vector<ProcessUsage> rows;
  // A list that does not fit in memory counts as empty.
  const bool isParsed = ifMemoryAllows([&] {
    if (output && isUtf8(*output)) {
      rows = parseNettopOutput(*output);
    }
  });
  co_return isParsed ? rows : std::vector<ProcessUsage>();
}

} // namespace tidewell
