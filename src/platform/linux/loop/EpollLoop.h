#pragma once

#include "base/QueueCore.h"
#include "platform/linux/loop/EventLoop.h"
#include "platform/linux/loop/FileDescriptor.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <span>

struct epoll_event;

namespace tidewell {

/// The running program's loop: tasks, timers and descriptors on one epoll instance.
class EpollLoop final : public EventLoop {
public:
  /// Aborts if the kernel provides no epoll instance.
  EpollLoop();
  ~EpollLoop() override;

  void post(Task task) override;
  void postAfter(Seconds delay, Task task) override;
  [[nodiscard]] std::unique_ptr<Timer> repeat(Seconds first, Seconds period, Task task) override;
  [[nodiscard]] std::unique_ptr<FdWatch> watch(int descriptor, std::uint32_t events,
                                               FdHandler handler) override;
  [[nodiscard]] Subscription beforeSleep(std::function<void()> function) override;

  /// Runs until `quit`.
  void run();

  /// Makes `run`, or its next call, return after the current task.
  void quit() { m_quit = true; }

private:
  class LoopTimer;
  class Watch;

  [[nodiscard]] Ticks timerBase() const;
  bool finishTurn();
  bool armAlarm();
  void dispatch(std::span<const epoll_event> events);

  FileDescriptor m_epoll;
  FileDescriptor m_alarm; // timerfd for the next timer
  Ticks m_alarmAt = Ticks::zero();
  Ticks m_lastAlarm = Ticks::zero();
  QueueCore m_core;
  std::map<std::uint64_t, std::shared_ptr<FdHandler>> m_handlers;
  std::uint64_t m_nextHandler;
  Observers<> m_beforeSleep;
  bool m_quit = false;
};

} // namespace tidewell
