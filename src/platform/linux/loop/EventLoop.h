#pragma once

#include "base/Observers.h"
#include "base/Scheduler.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace tidewell {

/// Keeps a file descriptor watched; ends the watch when destroyed. The descriptor stays open.
class FdWatch {
public:
  FdWatch() = default;
  FdWatch(const FdWatch&) = delete;
  FdWatch& operator=(const FdWatch&) = delete;
  virtual ~FdWatch() = default;

  /// Replaces what is waited for (`EPOLLIN`, `EPOLLOUT`, ... or zero for errors alone).
  virtual void setEvents(std::uint32_t events) = 0;
};

/// The resident's main queue, which also watches file descriptors.
class EventLoop : public WorkQueue {
public:
  using FdHandler = std::function<void(std::uint32_t events)>;

  /// Calls the handler with the events of the descriptor whenever there are any (level-triggered;
  /// `EPOLLERR` and `EPOLLHUP` always). Null when the kernel cannot watch this descriptor.
  [[nodiscard]] virtual std::unique_ptr<FdWatch> watch(int descriptor, std::uint32_t events,
                                                       FdHandler handler) = 0;

  /// Calls the function at the end of every turn, before the loop may sleep: the place to flush
  /// output and to set what is waited for.
  [[nodiscard]] virtual Subscription beforeSleep(std::function<void()> function) = 0;
};

} // namespace tidewell
