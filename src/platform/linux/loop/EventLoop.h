#pragma once

#include "base/Interface.h"
#include "base/Observers.h"
#include "base/Scheduler.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace tidewell {

/// Keeps a file descriptor watched until destroyed. The descriptor stays open.
class FdWatch : public Interface {
public:
  /// Sets the events to wait for (`EPOLLIN`, `EPOLLOUT`, ...; zero for errors only).
  virtual void setEvents(std::uint32_t events) = 0;
};

/// The resident's main queue, which also watches file descriptors.
class EventLoop : public WorkQueue {
public:
  using FdHandler = std::function<void(std::uint32_t events)>;

  /// Calls the handler with the descriptor's events while there are any (level-triggered, always
  /// including `EPOLLERR` and `EPOLLHUP`). Null if the kernel cannot watch this descriptor.
  [[nodiscard]] virtual std::unique_ptr<FdWatch> watch(int descriptor, std::uint32_t events,
                                                       FdHandler handler) = 0;

  /// Calls the function at the end of every turn, before the loop may sleep. Use it to flush output
  /// and to update watches.
  [[nodiscard]] virtual Subscription beforeSleep(std::function<void()> function) = 0;
};

} // namespace tidewell
