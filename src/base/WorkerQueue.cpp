#include "base/WorkerQueue.h"

#include <algorithm>
#include <chrono>

namespace tidewell {

namespace {

using SteadyClock = std::chrono::steady_clock;

Ticks now() { return SteadyClock::now().time_since_epoch(); }

} // namespace

void WorkerQueue::post(Task task) {
  {
    const std::scoped_lock lock(m_mutex);
    if (m_closed) {
      return;
    }
    m_core.post(std::move(task));
  }
  m_wake.notify_one();
}

QueueCore::TimerId WorkerQueue::add(Seconds first, Ticks period, Task task) {
  QueueCore::TimerId timer = 0;
  {
    const std::scoped_lock lock(m_mutex);
    timer = m_core.add(now() + toTicks(first), period, std::move(task));
  }
  m_wake.notify_one();
  return timer;
}

void WorkerQueue::cancel(QueueCore::TimerId timer) {
  const std::scoped_lock lock(m_mutex);
  m_core.cancel(timer);
}

void WorkerQueue::close() {
  QueueCore dropped; // destroyed unlocked: what the tasks hold may call back
  {
    const std::scoped_lock lock(m_mutex);
    m_closed = true;
    std::swap(dropped, m_core);
  }
  m_wake.notify_all();
}

void WorkerQueue::enlist() {
  const std::scoped_lock lock(m_mutex);
  m_workers.push_back(std::this_thread::get_id());
}

bool WorkerQueue::leave(std::size_t spare) {
  const std::scoped_lock lock(m_mutex);
  if (m_waiting < spare) {
    return false;
  }
  std::erase(m_workers, std::this_thread::get_id());
  return true;
}

bool WorkerQueue::isWorker() {
  const std::scoped_lock lock(m_mutex);
  return std::ranges::find(m_workers, std::this_thread::get_id()) != m_workers.end();
}

WorkerQueue::Taken WorkerQueue::take() {
  std::unique_lock lock(m_mutex);
  ++m_waiting;
  QueueCore::Work work;
  while (!m_closed && !(work = m_core.take(now()))) {
    if (const auto due = m_core.nextDue()) {
      m_wake.wait_until(lock, SteadyClock::time_point(*due));
    } else {
      m_wake.wait(lock);
    }
  }
  --m_waiting;
  return {std::move(work), m_waiting == 0};
}

} // namespace tidewell
