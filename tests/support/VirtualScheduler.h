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

/// Every queue of a program under one virtual clock, one task at a time, in an order drawn from a
/// seed: the same seed gives the same run.
class VirtualScheduler final : public Scheduler {
public:
  explicit VirtualScheduler(std::uint64_t seed = 1);
  ~VirtualScheduler() override;

  [[nodiscard]] WorkQueue& main() override;
  [[nodiscard]] WorkQueue& background() override { return *m_background; }
  [[nodiscard]] std::unique_ptr<WorkQueue> makeSerialQueue(std::string label) override;

  /// Runs all that is ready or falls due in the next `span` seconds. Called by the test.
  void advance(Seconds span);

  /// Runs all that is ready now. Called by the test.
  void settle() { advance(0.0); }

  /// Waits for that span of virtual time.
  [[nodiscard]] Async<> sleep(Seconds span);

  /// Has a function called for the queue whenever nobody has anything to do at this moment of
  /// virtual time, and now and then in between. Time passes when all such functions give false:
  /// they had nothing to do either.
  void whenIdle(const WorkQueue& queue, std::function<bool()> function);
  /// Ends what `whenIdle` began for this queue.
  void forgetIdle(const WorkQueue& queue);

  /// Ends what waits in the concurrent queue, as the end of a program does.
  void endBackground();

  /// Whether a task or an idle function of the main queue runs.
  [[nodiscard]] bool isMainCurrent() const;
  /// Runs a function that does not count as work of the main queue.
  void runApart(const std::function<void()>& function);

  /// How many timers there are, one-time delays included, and how many tasks wait to be run.
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
  std::vector<std::shared_ptr<Queue>> m_queues; // those whose lanes exist
  std::vector<std::size_t> m_ready;             // for `step`, kept for its memory
  std::vector<Idle> m_idle;
  std::vector<std::string> m_labels;
  std::shared_ptr<std::size_t> m_timers = std::make_shared<std::size_t>(0);
  const void* m_current = nullptr; // the queue whose task or idle function runs
  std::unique_ptr<Lane> m_main;
  std::unique_ptr<Lane> m_sleepers;
  std::unique_ptr<Lane> m_backgroundLane;
  std::optional<TaskQueue> m_background;
};

/// The wall clock of a virtual machine: runs with virtual time and jumps when told to.
class VirtualClock final : public Clock {
public:
  explicit VirtualClock(const VirtualScheduler& scheduler, double start = 1'700'000'000.0)
      : m_scheduler(scheduler), m_offset(start) {}
  [[nodiscard]] double now() const override {
    return m_offset + std::chrono::duration<double>(m_scheduler.now()).count();
  }
  /// Moves the wall clock, and nothing else, by so many seconds.
  void jump(Seconds by) { m_offset += by; }

private:
  const VirtualScheduler& m_scheduler;
  double m_offset;
};

} // namespace tidewell::test
