#pragma once

#include "base/Clock.h"
#include "base/QueueCore.h"
#include "base/TaskQueue.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace tidewell::test {

/// All queues of a program under one virtual clock, one task at a time, in an order drawn from a
/// seed: the same seed gives the same run.
class VirtualScheduler final : public Scheduler {
public:
  explicit VirtualScheduler(std::uint64_t seed = 1);
  ~VirtualScheduler() override;

  [[nodiscard]] WorkQueue& main() override;
  [[nodiscard]] WorkQueue& background() override { return *m_background; }
  [[nodiscard]] std::unique_ptr<WorkQueue> makeSerialQueue(std::string label) override;

  /// Runs everything that is ready or falls due within `span` seconds.
  void advance(Seconds span);

  /// Runs everything that is ready now.
  void settle() { advance(0.0); }

  /// Waits for this span of virtual time.
  [[nodiscard]] Async<> sleep(Seconds span);

  /// Calls a function on the queue whenever nothing else is ready, and occasionally in between.
  /// Time passes only when all such functions return false because they had nothing to do.
  void whenIdle(const WorkQueue& queue, std::function<bool()> function);
  /// Removes this queue's `whenIdle` function.
  void forgetIdle(const WorkQueue& queue);

  /// Ends the waiting tasks of the concurrent queue, like the end of a program.
  void endBackground();

  /// Whether a task or an idle function of the main queue runs.
  [[nodiscard]] bool isMainCurrent() const;
  /// Runs a function that does not count as work of the main queue.
  void runApart(const std::function<void()>& function);

  /// The number of timers, including one-time delays, and of tasks waiting to run.
  [[nodiscard]] std::size_t timers() const { return *m_timers; }
  [[nodiscard]] std::size_t waiting() const;

  /// Virtual time since construction.
  [[nodiscard]] Ticks now() const { return m_now; }

  /// Forgets the labels of the queues.
  void forgetLabels() { m_labels = {}; }

  /// Labels of the serial queues made so far.
  [[nodiscard]] const std::vector<std::string>& labels() const { return m_labels; }

private:
  struct Queue;
  class Lane;
  class SerialQueue;
  class VirtualTimer;
  struct Idle {
    const WorkQueue* queue;
    std::function<bool()> function;
  };

  bool step();
  bool runIdle();
  bool moveOn();

  std::mt19937_64 m_random;
  Ticks m_now = Ticks::zero();
  Ticks m_target = Ticks::zero();
  std::vector<std::shared_ptr<Queue>> m_queues; // those that still exist
  std::vector<std::size_t> m_ready;             // used by `step`, kept to avoid allocations
  std::vector<Idle> m_idle;
  std::vector<std::string> m_labels;
  std::shared_ptr<std::size_t> m_timers = std::make_shared<std::size_t>(0);
  const void* m_current = nullptr; // the queue whose task or idle function runs
  std::unique_ptr<Lane> m_main;
  std::unique_ptr<Lane> m_sleepers;
  std::unique_ptr<Lane> m_backgroundLane;
  std::optional<TaskQueue> m_background;
};

/// A virtual machine's wall clock. It follows virtual time and jumps on demand.
class VirtualClock final : public Clock {
public:
  explicit VirtualClock(const VirtualScheduler& scheduler, double start = 1'700'000'000.0)
      : m_scheduler(scheduler), m_offset(start) {}
  [[nodiscard]] double now() const override {
    return m_offset + std::chrono::duration<double>(m_scheduler.now()).count();
  }
  /// Moves only the wall clock by this many seconds.
  void jump(Seconds by) { m_offset += by; }

private:
  const VirtualScheduler& m_scheduler;
  double m_offset;
};

} // namespace tidewell::test
