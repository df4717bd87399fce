#pragma once

#include "platform/linux/loop/FileDescriptor.h"

#include <functional>
#include <memory>

namespace tidewell {

class EventLoop;
class FdWatch;
class Timer;

/// Tells when the kernel's links, addresses, routes or routing rules may have changed and have been
/// quiet for a tenth of a second since; while they never are, once a second. Main thread.
///
/// The messages are not read: whoever is told asks the kernel anew, so a lost or a malformed one
/// does no harm. Without messages nothing wakes up, and a flood of them costs ten wake-ups a
/// second.
class RouteChanges {
public:
  /// Hears of the kernel's network namespace that the calling thread is in. Silent when the kernel
  /// gives no socket.
  RouteChanges(EventLoop& loop, std::function<void()> observer);
  RouteChanges(const RouteChanges&) = delete;
  RouteChanges& operator=(const RouteChanges&) = delete;
  ~RouteChanges();

private:
  void beginWindow();
  void endWindow();
  [[nodiscard]] bool drain() const;

  EventLoop& m_loop;
  std::function<void()> m_observer;
  FileDescriptor m_socket;
  std::unique_ptr<FdWatch> m_watch;
  std::unique_ptr<Timer> m_window;
  int m_windows = 0;
};

} // namespace tidewell
