#pragma once

#include "base/Interface.h"
#include "base/Scheduler.h"

#include <functional>
#include <memory>

namespace tidewell {

/// How the machine reaches the internet.
struct PathReport {
  /// Whether it does at all.
  bool isSatisfied = false;
  bool usesWifi = false;
  bool usesWiredEthernet = false;
  bool usesCellular = false;

  friend bool operator==(const PathReport&, const PathReport&) = default;
};

/// Keeps the path watched. No report begins after its destruction.
class PathWatch : public Interface {
public:
};

/// Watches how the machine reaches the internet.
class PathMonitor : public Interface {
public:
  using Handler = std::function<void(const PathReport&)>;

  /// Calls the handler on `queue` soon with the current path, then once for each change. The queue
  /// outlives the watch.
  [[nodiscard]] virtual std::unique_ptr<PathWatch> watch(WorkQueue& queue, Handler handler) = 0;
};

} // namespace tidewell
