#pragma once

#include "base/QueueCore.h"
#include "base/Scheduler.h"

#include <condition_variable>
#include <cstddef>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace tidewell {

/// A synchronised queue that one or more worker threads drain. Any thread.
///
/// Owned jointly by the queue's face, its timers and its workers, so any of them may go first.
class WorkerQueue {
public:
  /// A piece of work, and whether its taker left no other worker waiting.
  struct Taken {
    QueueCore::Work work;
    bool lastWaiting = false;
  };

  void post(Task task);
  QueueCore::TimerId add(Seconds first, Ticks period, Task task);
  void cancel(QueueCore::TimerId timer);

  /// Drops what waits; workers leave as soon as their present task is done.
  void close();

  /// Makes the calling thread one of the queue's workers.
  void enlist();

  /// Ends that, unless fewer than `spare` other workers wait for work. Whether it did.
  bool leave(std::size_t spare);

  /// Whether the calling thread is one of the queue's workers.
  [[nodiscard]] bool isWorker();

  /// Waits for a piece of work; null work once the queue is closed.
  [[nodiscard]] Taken take();

private:
  std::mutex m_mutex;
  std::condition_variable m_wake;
  QueueCore m_core;
  std::vector<std::thread::id> m_workers;
  std::size_t m_waiting = 0;
  bool m_closed = false;
};

/// Cancels its timer in the queue when destroyed.
class WorkerTimer final : public Timer {
public:
  WorkerTimer(std::shared_ptr<WorkerQueue> queue, QueueCore::TimerId timer)
      : m_queue(std::move(queue)), m_timer(timer) {}
  ~WorkerTimer() override { m_queue->cancel(m_timer); }

private:
  std::shared_ptr<WorkerQueue> m_queue;
  QueueCore::TimerId m_timer;
};

} // namespace tidewell
