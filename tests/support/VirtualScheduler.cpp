#include "VirtualScheduler.h"

#include <algorithm>
#include <utility>

namespace tidewell::test {

struct VirtualScheduler::Queue {
  QueueCore core;
  std::size_t posted = 0; // waiting tasks, without timers
};

class VirtualScheduler::VirtualTimer final : public Timer {
public:
  VirtualTimer(std::shared_ptr<Queue> queue, QueueCore::TimerId timer,
               std::shared_ptr<std::size_t> count)
      : m_count(std::move(count)), m_queue(std::move(queue)), m_timer(timer) {
    ++*m_count;
  }
  ~VirtualTimer() override {
    m_queue->core.cancel(m_timer);
    --*m_count;
  }

private:
  std::shared_ptr<std::size_t> m_count;
  std::shared_ptr<Queue> m_queue;
  QueueCore::TimerId m_timer;
};

/// Runs this queue's tasks in order; between queues, chance decides.
class VirtualScheduler::Lane final : public WorkQueue {
public:
  explicit Lane(VirtualScheduler& scheduler) : m_scheduler(scheduler) {
    scheduler.m_queues.push_back(m_queue);
  }
  ~Lane() override {
    std::erase(m_scheduler.m_queues, m_queue);
    m_queue->core = {};
  }
  void post(Task task) override {
    ++m_queue->posted;
    m_queue->core.post([&queue = *m_queue, task = std::move(task)] {
      --queue.posted;
      return task();
    });
  }
  void postAfter(Seconds delay, Task task) override {
    // Counted while the task lives, because a destroyed queue drops it.
    auto counted = std::shared_ptr<std::size_t>(
        &++*m_scheduler.m_timers, [count = m_scheduler.m_timers](std::size_t*) { --*count; });
    m_queue->core.add(m_scheduler.m_now + toTicks(delay), Ticks::zero(),
                      [counted = std::move(counted), task = std::move(task)] { return task(); });
  }
  std::unique_ptr<Timer> repeat(Seconds first, Seconds period, Task task) override {
    const auto timer =
        m_queue->core.add(m_scheduler.m_now + toTicks(first), toPeriod(period), std::move(task));
    return std::make_unique<VirtualTimer>(m_queue, timer, m_scheduler.m_timers);
  }
  [[nodiscard]] const Queue* queue() const { return m_queue.get(); }

private:
  VirtualScheduler& m_scheduler;
  std::shared_ptr<Queue> m_queue = std::make_shared<Queue>();
};

class VirtualScheduler::SerialQueue final : public WorkQueue {
public:
  explicit SerialQueue(VirtualScheduler& scheduler)
      : m_lane(scheduler), m_tasks(m_lane, TaskQueue::Kind::serial) {}
  void post(Task task) override { m_tasks.post(std::move(task)); }
  void postAfter(Seconds delay, Task task) override { m_tasks.postAfter(delay, std::move(task)); }
  std::unique_ptr<Timer> repeat(Seconds first, Seconds period, Task task) override {
    return m_tasks.repeat(first, period, std::move(task));
  }

private:
  Lane m_lane;
  TaskQueue m_tasks;
};

VirtualScheduler::VirtualScheduler(std::uint64_t seed)
    : m_random(seed), m_main(std::make_unique<Lane>(*this)),
      m_sleepers(std::make_unique<Lane>(*this)), m_backgroundLane(std::make_unique<Lane>(*this)),
      m_background(std::in_place, *m_backgroundLane, TaskQueue::Kind::concurrent) {}

VirtualScheduler::~VirtualScheduler() = default;

WorkQueue& VirtualScheduler::main() { return *m_main; }

std::unique_ptr<WorkQueue> VirtualScheduler::makeSerialQueue(std::string label) {
  m_labels.push_back(std::move(label));
  return std::make_unique<SerialQueue>(*this);
}

void VirtualScheduler::advance(Seconds span) {
  m_target = m_now + toTicks(span);
  while (step()) {
  }
}

Async<> VirtualScheduler::sleep(Seconds span) {
  Waiter waiter;
  const auto timer = m_sleepers->repeat(span, 0.0, [&waiter] { waiter.resume(); });
  co_await waiter;
}

/// Runs one task, or lets time pass until there is one. False when the time is up.
bool VirtualScheduler::step() {
  m_ready.clear();
  for (std::size_t index = 0; index < m_queues.size(); ++index) {
    if (m_queues[index]->core.isReady(m_now)) {
      m_ready.push_back(index);
    }
  }
  constexpr std::uint64_t looksEvery = 32;
  if (!m_idle.empty() && (m_ready.empty() || m_random() % looksEvery == 0)) {
    const bool hasWorked = runIdle();
    const bool isReady = std::ranges::any_of(
        m_queues, [this](const auto& queue) { return queue->core.isReady(m_now); });
    if (hasWorked || isReady) {
      return true;
    }
    m_ready.clear(); // an idle function may have cancelled a timer that was due
  }
  if (m_ready.empty()) {
    return moveOn();
  }
  const auto choice = m_ready.size() == 1 ? 0 : m_random() % m_ready.size();
  const auto queue = m_queues[m_ready[choice]]; // keeps it alive: the task may end its own queue
  const QueueCore::Work work = queue->core.take(m_now);
  m_current = queue.get();
  runAtOnce(*work);
  m_current = nullptr;
  return true;
}

bool VirtualScheduler::runIdle() {
  bool hasWorked = false;
  for (std::size_t index = 0; index < m_idle.size(); ++index) {
    const Idle idle = m_idle[index]; // keeps it alive: the function may end itself
    m_current = idle.queue;
    hasWorked = idle.function() || hasWorked;
    m_current = nullptr;
  }
  return hasWorked;
}

void VirtualScheduler::whenIdle(const WorkQueue& queue, std::function<bool()> function) {
  m_idle.push_back({&queue, std::move(function)});
}

void VirtualScheduler::forgetIdle(const WorkQueue& queue) {
  std::erase_if(m_idle, [&](const Idle& idle) { return idle.queue == &queue; });
}

void VirtualScheduler::endBackground() {
  m_background.emplace(*m_backgroundLane, TaskQueue::Kind::concurrent);
}

bool VirtualScheduler::isMainCurrent() const {
  return m_current == m_main.get() || m_current == m_main->queue();
}

void VirtualScheduler::runApart(const std::function<void()>& function) {
  const void* const before = std::exchange(m_current, nullptr);
  function();
  m_current = before;
}

std::size_t VirtualScheduler::waiting() const {
  std::size_t sum = 0;
  for (const auto& queue : m_queues) {
    sum += queue->posted;
  }
  return sum;
}

bool VirtualScheduler::moveOn() {
  std::optional<Ticks> next;
  for (const auto& queue : m_queues) {
    const auto due = queue->core.nextDue();
    if (due && (!next || *due < *next)) {
      next = due;
    }
  }
  const bool isInTime = next && *next <= m_target;
  m_now = isInTime ? *next : m_target;
  return isInTime;
}

} // namespace tidewell::test
