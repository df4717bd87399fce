#pragma once

#include "base/MainQueue.h"
#include "base/Observers.h"
#include "base/QueueCore.h"
#include "platform/linux/loop/FileDescriptor.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <span>
#include <thread>
#include <vector>

struct epoll_event;

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

/// The resident's main queue: tasks, timers and file descriptors on one epoll instance.
///
/// Whoever constructs the loop holds its turn and keeps it except while `run` sleeps, so that
/// nothing else runs as "main" before, after or beside it. Members that are not inherited are for
/// the holder of the turn. Constructed, run and destroyed on the same thread.
class EventLoop final : public MainQueue {
public:
  using FdHandler = std::function<void(std::uint32_t events)>;

  /// Aborts when the kernel gives no epoll instance: nothing works without one.
  EventLoop();
  ~EventLoop() override;

  void post(Task task) override;
  void postAfter(Seconds delay, Task task) override;
  [[nodiscard]] std::unique_ptr<Timer> repeat(Seconds first, Seconds period, Task task) override;
  [[nodiscard]] bool isCurrent() const override;
  void addHelper(std::thread::id thread) override;
  void removeHelper(std::thread::id thread) override;
  void help() override;

  /// Calls the handler with the events of the descriptor whenever there are any (level-triggered;
  /// `EPOLLERR` and `EPOLLHUP` always). Null when the kernel cannot watch this descriptor.
  [[nodiscard]] std::unique_ptr<FdWatch> watch(int descriptor, std::uint32_t events,
                                               FdHandler handler);

  /// Calls the function at the end of every turn, before the loop may sleep: the place to flush
  /// output and to set what is waited for.
  [[nodiscard]] Subscription beforeSleep(std::function<void()> function);

  /// Serves until `quit`.
  void run();

  /// Makes `run`, or its next call, return after the present task.
  void quit();

private:
  class LoopTimer;
  class Watch;

  void take();
  void release();
  bool finishTurn();
  bool armAlarm();
  void dispatch(std::span<const epoll_event> events);
  void wake();

  FileDescriptor m_epoll;
  FileDescriptor m_wakeUp; // eventfd: something was posted from outside
  FileDescriptor m_alarm;  // timerfd: the next timer
  std::mutex m_turn;
  std::atomic<std::thread::id> m_holder;

  mutable std::mutex m_mutex;
  QueueCore m_core;                       // guarded by m_mutex
  std::vector<std::thread::id> m_helpers; // guarded by m_mutex

  std::map<std::uint64_t, std::shared_ptr<FdHandler>> m_handlers; // held by the turn, as all below
  std::uint64_t m_nextHandler;
  Observers<> m_beforeSleep;
  Ticks m_alarmAt = Ticks::zero();
  bool m_quit = false;
};

} // namespace tidewell
