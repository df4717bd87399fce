#pragma once

#include "base/Clock.h"
#include "base/QueueCore.h"
#include "base/Scheduler.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace tidewell::test {

/// Every queue of a program under one virtual clock, one task at a time, in an order drawn from a
/// seed: the same seed gives the same run.
///
/// A task may block (`block`): its queue then stands still for that span of virtual time while all
/// others go on, as a thread that waits for a child process would. The test's own thread counts as
/// the main queue between calls of `advance`.
class VirtualScheduler final : public Scheduler {
public:
  explicit VirtualScheduler(std::uint64_t seed = 1);
  ~VirtualScheduler() override;

  [[nodiscard]] WorkQueue& main() override;
  [[nodiscard]] WorkQueue& background() override;
  [[nodiscard]] std::unique_ptr<WorkQueue> makeSerialQueue(std::string label) override;

  /// Runs all that is ready or falls due in the next `span` seconds. Called by the test.
  void advance(Seconds span);

  /// Runs all that is ready now. Called by the test.
  void settle() { advance(0.0); }

  /// Blocks the task that calls it, and so its queue.
  void block(Seconds span);

  /// Blocks likewise, but only until the condition holds. It is asked whenever anything was done.
  void blockUntil(const std::function<bool()>& condition, Seconds span);

  /// Has a function called as a task of the queue whenever nobody has anything to do at this moment
  /// of virtual time, and now and then in between. Time passes when all such functions give false:
  /// they had nothing to do either.
  void whenIdle(WorkQueue& queue, std::function<bool()> function);
  /// Ends what `whenIdle` began for this queue.
  void forgetIdle(const WorkQueue& queue);

  /// Drops what waits in the concurrent queue, as the end of a program's threads does.
  void endBackground();

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
  class Queue;
  class Face;
  class VirtualTimer;
  struct Party;
  struct Blocked;
  struct Driver;

  Party& drive();
  Party* step();
  void runFrom(const std::shared_ptr<Queue>& queue);
  bool moveOn();
  [[nodiscard]] std::optional<Ticks> nextEvent() const;
  [[nodiscard]] bool isNothingReady() const;
  [[nodiscard]] bool isAwake(const Blocked& blocked) const;
  bool runIdle();
  void switchTo(Party& next, Party& self);
  Party& idleDriver();

  std::mt19937_64 m_random;
  Ticks m_now = Ticks::zero();
  Ticks m_target = Ticks::zero();
  bool m_ending = false;
  std::vector<std::shared_ptr<Queue>> m_queues; // those whose faces exist
  std::vector<std::size_t> m_ready;             // for `step`, kept for its memory
  std::vector<Blocked*> m_awake;                // likewise
  std::shared_ptr<Queue> m_mainQueue;
  std::shared_ptr<Queue> m_backgroundQueue;
  std::unique_ptr<WorkQueue> m_mainFace;
  std::unique_ptr<WorkQueue> m_backgroundFace;
  std::shared_ptr<Queue> m_current; // whose task runs; null while the test's own thread does
  std::vector<Blocked*> m_blocked;
  std::vector<std::string> m_labels;
  struct Idle {
    const WorkQueue* face;
    std::shared_ptr<Queue> queue;
    std::function<bool()> function;
  };
  std::vector<Idle> m_idle;
  std::shared_ptr<std::size_t> m_timers = std::make_shared<std::size_t>(0);

  // Exactly one party runs at a time; it owns everything above.
  std::mutex m_mutex;
  std::unique_ptr<Party> m_test;
  Party* m_running;
  std::vector<std::unique_ptr<Driver>> m_drivers;
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
