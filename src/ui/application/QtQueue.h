#pragma once

#include "base/Scheduler.h"
#include "platform/linux/files/FileWatcher.h"

#include <QObject>

namespace tidewell {

/// The application's event loop as a work queue. Timers repeat from their last firing, which is
/// accurate enough for windows.
class QtQueue final : public WorkQueue {
public:
  void post(Task task) override;
  void postAfter(Seconds delay, Task task) override;
  [[nodiscard]] std::unique_ptr<Timer> repeat(Seconds first, Seconds period, Task task) override;

private:
  class Context final : public QObject {
  protected:
    bool event(QEvent* event) override;
  };

  Context m_context; // discards posted tasks when destroyed
};

/// Watches descriptors for reading in the application's event loop.
[[nodiscard]] WatchDescriptor qtWatch();

} // namespace tidewell
