#pragma once

#include "platform/linux/loop/FileDescriptor.h"

#include <functional>
#include <memory>

namespace tidewell {

class EventLoop;
class FdWatch;
class Timer;

/// Reports that the kernel's links, addresses, routes or routing rules may have changed, once they
/// have been quiet for a tenth of a second, or once a second while they never are.
///
/// The messages are not read: the observer asks the kernel anew, so a lost or malformed message
/// does no harm. Without messages nothing wakes up, and a flood of them costs ten wake-ups a
/// second.
class RouteChanges {
public:
  /// Watches the network namespace of the calling thread. If the kernel gives no socket, tries
  /// again every second, and reports a change once it has one.
  RouteChanges(EventLoop& loop, std::function<void()> observer);
  ~RouteChanges();

private:
  [[nodiscard]] bool open();
  void beginWindow();
  void endWindow();
  [[nodiscard]] bool drain() const;

  EventLoop& m_loop;
  std::function<void()> m_observer;
  FileDescriptor m_socket;
  std::unique_ptr<FdWatch> m_watch;
  std::unique_ptr<Timer> m_timer; // of the present window, or of the next attempt to open
  int m_windows = 0;
};

} // namespace tidewell
