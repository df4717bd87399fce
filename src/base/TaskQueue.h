#pragma once

#include "base/Scheduler.h"

#include <memory>

namespace tidewell {

/// A queue on a loop. Its tasks may wait.
///
/// Must not be destroyed by one of its own tasks after that task has waited.
class TaskQueue final : public WorkQueue {
public:
  /// How many tasks may run at once, counting those that wait.
  enum class Kind { serial, concurrent };

  /// Borrows the loop.
  TaskQueue(WorkQueue& loop, Kind kind);
  ~TaskQueue() override;

  void post(Task task) override;
  void postAfter(Seconds delay, Task task) override;
  [[nodiscard]] std::unique_ptr<Timer> repeat(Seconds first, Seconds period, Task task) override;

private:
  struct State;
  struct Entry;
  class QueueTimer;

  std::shared_ptr<State> m_state;
};

/// The queues of a program that has one loop.
class LoopScheduler final : public Scheduler {
public:
  /// `main` is the loop, borrowed.
  explicit LoopScheduler(WorkQueue& main)
      : m_main(main), m_background(main, TaskQueue::Kind::concurrent) {}

  [[nodiscard]] WorkQueue& main() override { return m_main; }
  [[nodiscard]] WorkQueue& background() override { return m_background; }
  [[nodiscard]] std::unique_ptr<WorkQueue> makeSerialQueue(std::string /*label*/) override {
    return std::make_unique<TaskQueue>(m_main, TaskQueue::Kind::serial);
  }

private:
  WorkQueue& m_main;
  TaskQueue m_background;
};

} // namespace tidewell
