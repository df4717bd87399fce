#pragma once

#include "base/Scheduler.h"

#include <deque>
#include <memory>
#include <string>
#include <utility>

namespace tidewell::bench {

/// Queues that run on the caller's thread when told to, so that a benchmark measures the work and
/// not the threads around it.
class ManualScheduler final : public Scheduler {
public:
  [[nodiscard]] WorkQueue& main() override { return m_queue; }
  [[nodiscard]] WorkQueue& background() override { return m_queue; }
  [[nodiscard]] std::unique_ptr<WorkQueue> makeSerialQueue(std::string) override {
    return std::make_unique<Face>(m_queue);
  }

  /// Runs everything that is posted.
  void drain() {
    while (!m_queue.tasks.empty()) {
      const Task task = std::move(m_queue.tasks.front());
      m_queue.tasks.pop_front();
      task();
    }
  }

  /// Fires the timer that was made last, and then drains.
  void fire() {
    m_queue.timerTask();
    drain();
  }

private:
  struct Queue : WorkQueue {
    void post(Task task) override { tasks.push_back(std::move(task)); }
    void postAfter(Seconds, Task task) override { post(std::move(task)); }
    std::unique_ptr<Timer> repeat(Seconds, Seconds, Task task) override {
      timerTask = std::move(task);
      return std::make_unique<Timer>();
    }
    bool isCurrent() const override { return true; }

    std::deque<Task> tasks;
    Task timerTask;
  };

  struct Face final : WorkQueue {
    explicit Face(Queue& target) : queue(target) {}
    void post(Task task) override { queue.post(std::move(task)); }
    void postAfter(Seconds delay, Task task) override { queue.postAfter(delay, std::move(task)); }
    std::unique_ptr<Timer> repeat(Seconds first, Seconds period, Task task) override {
      return queue.repeat(first, period, std::move(task));
    }
    bool isCurrent() const override { return true; }

    Queue& queue;
  };

  Queue m_queue;
};

} // namespace tidewell::bench
