#pragma once

#include "base/Scheduler.h"

#include <functional>
#include <memory>

namespace tidewell {

/// Decides when the windows' process has to show the item, because no panel does. Main thread.
class FallbackItem {
public:
  /// Borrows the queue. `show` is told when the item is to be shown, or no longer.
  FallbackItem(WorkQueue& main, std::function<void(bool isWanted)> show);

  /// A panel has taken the item, or has gone. A panel that restarts gets some seconds to come back.
  void setTaken(bool isTaken);

private:
  WorkQueue& m_main;
  std::function<void(bool isWanted)> m_show;
  std::unique_ptr<Timer> m_patience;
  bool m_isShown = false;
};

} // namespace tidewell
