#pragma once

#include "base/MainQueue.h"
#include "base/Observers.h"
#include "platform/linux/loop/FileDescriptor.h"
#include "support/VirtualScheduler.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <thread>

namespace tidewell {

/// As the program's own event loop has it.
class FdWatch {
public:
  FdWatch() = default;
  FdWatch(const FdWatch&) = delete;
  FdWatch& operator=(const FdWatch&) = delete;
  virtual ~FdWatch() = default;
  virtual void setEvents(std::uint32_t events) = 0;
};

/// Takes the place of the program's event loop where time is virtual: the same promises, kept by a
/// queue of the virtual scheduler. Descriptors are real and are looked at before time passes.
class EventLoop final : public MainQueue {
public:
  using FdHandler = std::function<void(std::uint32_t events)>;

  /// The loop of the program itself.
  explicit EventLoop(test::VirtualScheduler& scheduler) : EventLoop(scheduler, scheduler.main()) {}
  /// The loop of somebody beside it.
  EventLoop(test::VirtualScheduler& scheduler, WorkQueue& queue);
  ~EventLoop() override { m_scheduler.forgetIdle(m_queue); }

  void post(Task task) override { m_queue.post(std::move(task)); }
  void postAfter(Seconds delay, Task task) override { m_queue.postAfter(delay, std::move(task)); }
  [[nodiscard]] std::unique_ptr<Timer> repeat(Seconds first, Seconds period, Task task) override {
    return m_queue.repeat(first, period, std::move(task));
  }
  [[nodiscard]] bool isCurrent() const override { return m_queue.isCurrent(); }
  void addHelper(std::thread::id /*thread*/) override {}
  void removeHelper(std::thread::id /*thread*/) override {}
  void help() override {}

  [[nodiscard]] std::unique_ptr<FdWatch> watch(int descriptor, std::uint32_t events,
                                               FdHandler handler);
  [[nodiscard]] Subscription beforeSleep(std::function<void()> function) {
    return m_beforeSleep.add(std::move(function));
  }

  /// How many descriptors are watched, and the most turns that it took until there was nothing left
  /// to do at a moment.
  [[nodiscard]] std::size_t watches() const { return m_handlers.size(); }
  [[nodiscard]] int mostTurns() const { return m_mostTurns; }

private:
  class Watch;

  bool turn();

  test::VirtualScheduler& m_scheduler;
  WorkQueue& m_queue;
  FileDescriptor m_epoll;
  std::map<std::uint64_t, std::shared_ptr<FdHandler>> m_handlers;
  std::uint64_t m_nextHandler = 0;
  Observers<> m_beforeSleep;
  Ticks m_lastTurn = Ticks::zero();
  int m_turns = 0;
  int m_mostTurns = 0;
};

} // namespace tidewell
