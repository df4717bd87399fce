#pragma once

#include "platform/linux/loop/EventLoop.h"
#include "platform/linux/loop/FileDescriptor.h"
#include "support/VirtualScheduler.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <utility>

namespace tidewell::test {

/// A loop in virtual time: a queue of the virtual scheduler. Descriptors are real and are polled
/// before time passes.
class VirtualLoop final : public EventLoop {
public:
  /// The program's loop.
  explicit VirtualLoop(VirtualScheduler& scheduler) : VirtualLoop(scheduler, scheduler.main()) {}
  /// The loop of another participant.
  VirtualLoop(VirtualScheduler& scheduler, WorkQueue& queue);
  ~VirtualLoop() override { m_scheduler.forgetIdle(m_queue); }

  void post(Task task) override { m_queue.post(std::move(task)); }
  void postAfter(Seconds delay, Task task) override { m_queue.postAfter(delay, std::move(task)); }
  [[nodiscard]] std::unique_ptr<Timer> repeat(Seconds first, Seconds period, Task task) override {
    return m_queue.repeat(first, period, std::move(task));
  }
  [[nodiscard]] std::unique_ptr<FdWatch> watch(int descriptor, std::uint32_t events,
                                               FdHandler handler) override;
  [[nodiscard]] Subscription beforeSleep(std::function<void()> function) override {
    return m_beforeSleep.add(std::move(function));
  }

  /// The number of watched descriptors, and the most turns needed until nothing was left to do at a
  /// moment.
  [[nodiscard]] std::size_t watches() const { return m_handlers.size(); }
  [[nodiscard]] int mostTurns() const { return m_mostTurns; }

private:
  class Watch;

  bool turn();

  VirtualScheduler& m_scheduler;
  WorkQueue& m_queue;
  FileDescriptor m_epoll;
  std::map<std::uint64_t, std::shared_ptr<FdHandler>> m_handlers;
  std::uint64_t m_nextHandler = 0;
  Observers<> m_beforeSleep;
  Ticks m_lastTurn = Ticks::zero();
  int m_turns = 0;
  int m_mostTurns = 0;
};

} // namespace tidewell::test
