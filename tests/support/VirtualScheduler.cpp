#include "VirtualScheduler.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <utility>

namespace tidewell::test {

/// Somebody who may run: the test's own thread, or a driver.
struct VirtualScheduler::Party {
  std::condition_variable wake;
};

class VirtualScheduler::Queue {
public:
  explicit Queue(bool isConcurrent) : concurrent(isConcurrent) {}

  QueueCore core;
  const bool concurrent;
  bool busy = false;
  std::size_t posted = 0; // tasks that wait, timers aside
  bool closed = false;

  [[nodiscard]] bool mayRun() const { return !closed && (concurrent || !busy); }
};

/// A task that waits for virtual time to pass, on the stack of the driver that ran it.
struct VirtualScheduler::Blocked {
  Party& party;
  Ticks until;
  const std::function<bool()>* condition = nullptr;
};

/// A thread that runs tasks; idle unless it runs or one of its tasks is blocked.
struct VirtualScheduler::Driver {
  Party party;
  bool idle = true;
  std::thread thread;
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

class VirtualScheduler::Face final : public WorkQueue {
public:
  Face(VirtualScheduler& scheduler, std::shared_ptr<Queue> queue)
      : m_scheduler(scheduler), m_queue(std::move(queue)) {}
  ~Face() override {
    m_queue->closed = true;
    std::erase(m_scheduler.m_queues, m_queue);
    m_queue->core = {};
  }
  void post(Task task) override {
    ++m_queue->posted;
    m_queue->core.post([&queue = *m_queue, task = std::move(task)] {
      --queue.posted;
      task();
    });
  }
  void postAfter(Seconds delay, Task task) override {
    // Counted as long as the task lives: a queue that goes drops it.
    auto counted = std::shared_ptr<std::size_t>(
        &++*m_scheduler.m_timers, [count = m_scheduler.m_timers](std::size_t*) { --*count; });
    m_queue->core.add(m_scheduler.m_now + toTicks(delay), Ticks::zero(),
                      [counted = std::move(counted), task = std::move(task)] { task(); });
  }
  std::unique_ptr<Timer> repeat(Seconds first, Seconds period, Task task) override {
    const auto timer =
        m_queue->core.add(m_scheduler.m_now + toTicks(first), toPeriod(period), std::move(task));
    return std::make_unique<VirtualTimer>(m_queue, timer, m_scheduler.m_timers);
  }
  bool isCurrent() const override {
    const auto& current = m_scheduler.m_current;
    return current == m_queue || (!current && m_queue == m_scheduler.m_mainQueue);
  }

private:
  friend class VirtualScheduler;

  VirtualScheduler& m_scheduler;
  std::shared_ptr<Queue> m_queue;
};

VirtualScheduler::VirtualScheduler(std::uint64_t seed)
    : m_random(seed), m_mainQueue(std::make_shared<Queue>(false)),
      m_backgroundQueue(std::make_shared<Queue>(true)),
      m_mainFace(std::make_unique<Face>(*this, m_mainQueue)),
      m_backgroundFace(std::make_unique<Face>(*this, m_backgroundQueue)),
      m_test(std::make_unique<Party>()), m_running(m_test.get()) {
  m_queues.push_back(m_mainQueue);
  m_queues.push_back(m_backgroundQueue);
}

VirtualScheduler::~VirtualScheduler() {
  // Blocked tasks sit on drivers' stacks: let each run to its end.
  m_ending = true;
  while (!m_blocked.empty()) {
    switchTo(m_blocked.back()->party, *m_test);
  }
  for (const auto& driver : m_drivers) {
    {
      const std::scoped_lock lock(m_mutex);
      m_running = &driver->party;
    }
    driver->party.wake.notify_one();
    driver->thread.join();
  }
}

WorkQueue& VirtualScheduler::main() { return *m_mainFace; }

WorkQueue& VirtualScheduler::background() { return *m_backgroundFace; }

std::unique_ptr<WorkQueue> VirtualScheduler::makeSerialQueue(std::string label) {
  m_labels.push_back(std::move(label));
  auto queue = std::make_shared<Queue>(false);
  m_queues.push_back(queue);
  return std::make_unique<Face>(*this, std::move(queue));
}

void VirtualScheduler::advance(Seconds span) {
  if (m_running != m_test.get() || m_current) {
    throw std::logic_error("advance is for the test's own thread");
  }
  m_target = m_now + toTicks(span);
  switchTo(idleDriver(), *m_test);
}

void VirtualScheduler::block(Seconds span) { blockUntil({}, span); }

void VirtualScheduler::blockUntil(const std::function<bool()>& condition, Seconds span) {
  if (!m_current) {
    throw std::logic_error("only a task can block");
  }
  if (m_ending) {
    return;
  }
  const Ticks until = m_now + toTicks(span);
  if (const auto next = nextEvent();
      m_idle.empty() && until <= m_target && (!next || *next > until) && isNothingReady()) {
    m_now = until; // nobody has anything to do meanwhile, so nobody takes over
    return;
  }
  Party& self = *m_running;
  Blocked blocked{self, until, condition ? &condition : nullptr};
  const auto queue = std::exchange(m_current, nullptr);
  m_blocked.push_back(&blocked);
  switchTo(idleDriver(), self);
  std::erase(m_blocked, &blocked);
  m_current = queue;
}

VirtualScheduler::Party& VirtualScheduler::idleDriver() {
  const auto idle =
      std::ranges::find_if(m_drivers, [](const auto& driver) { return driver->idle; });
  if (idle != m_drivers.end()) {
    return (*idle)->party;
  }
  auto& driver = *m_drivers.emplace_back(std::make_unique<Driver>());
  driver.thread = std::thread([this, &driver] {
    while (true) {
      {
        std::unique_lock lock(m_mutex);
        driver.party.wake.wait(lock, [&] { return m_running == &driver.party; });
      }
      if (m_ending) {
        return;
      }
      driver.idle = false;
      Party& next = drive();
      driver.idle = true;
      const std::scoped_lock lock(m_mutex);
      m_running = &next;
      next.wake.notify_one();
    }
  });
  return driver.party;
}

/// Runs tasks until somebody else has to go on: a blocked task's driver, or the test.
VirtualScheduler::Party& VirtualScheduler::drive() {
  while (!m_ending) {
    if (Party* const next = step()) {
      return *next;
    }
  }
  return *m_test;
}

/// Runs one task, or lets time pass until there is one; gives back who has to go on instead.
VirtualScheduler::Party* VirtualScheduler::step() {
  m_ready.clear();
  for (std::size_t index = 0; index < m_queues.size(); ++index) {
    if (m_queues[index]->mayRun() && m_queues[index]->core.isReady(m_now)) {
      m_ready.push_back(index);
    }
  }
  m_awake.clear();
  std::ranges::copy_if(m_blocked, std::back_inserter(m_awake),
                       [&](const Blocked* blocked) { return isAwake(*blocked); });
  const auto choices = m_ready.size() + m_awake.size();
  constexpr std::uint64_t looksEvery = 32;
  if (!m_idle.empty() && (choices == 0 || m_random() % looksEvery == 0)) {
    const bool hasWorked = runIdle();
    if (hasWorked || choices > 0 || !isNothingReady()) {
      return nullptr;
    }
  }
  if (choices == 0) {
    return moveOn() ? nullptr : m_test.get();
  }
  const auto choice = choices == 1 ? 0 : m_random() % choices;
  if (choice >= m_ready.size()) {
    return &m_awake[choice - m_ready.size()]->party;
  }
  const auto queue = m_queues[m_ready[choice]]; // kept: the task may close its own queue
  runFrom(queue);
  return nullptr;
}

void VirtualScheduler::runFrom(const std::shared_ptr<Queue>& queue) {
  const QueueCore::Work work = queue->core.take(m_now);
  queue->busy = true;
  m_current = queue;
  (*work)();
  m_current = nullptr;
  queue->busy = false;
}

bool VirtualScheduler::runIdle() {
  bool hasWorked = false;
  for (std::size_t index = 0; index < m_idle.size(); ++index) {
    const Idle idle = m_idle[index]; // kept: the function may end itself
    if (idle.queue->mayRun()) {
      idle.queue->busy = true;
      m_current = idle.queue;
      hasWorked = idle.function() || hasWorked;
      m_current = nullptr;
      idle.queue->busy = false;
    }
  }
  return hasWorked;
}

bool VirtualScheduler::isAwake(const Blocked& blocked) const {
  return blocked.until <= m_now || (blocked.condition != nullptr && (*blocked.condition)());
}

void VirtualScheduler::whenIdle(WorkQueue& queue, std::function<bool()> function) {
  m_idle.push_back({&queue, dynamic_cast<Face&>(queue).m_queue, std::move(function)});
}

void VirtualScheduler::forgetIdle(const WorkQueue& queue) {
  std::erase_if(m_idle, [&](const Idle& idle) { return idle.face == &queue; });
}

void VirtualScheduler::endBackground() {
  m_backgroundQueue->core = {};
  m_backgroundQueue->posted = 0;
}

std::size_t VirtualScheduler::waiting() const {
  std::size_t sum = 0;
  for (const auto& queue : m_queues) {
    sum += queue->posted;
  }
  return sum;
}

bool VirtualScheduler::moveOn() {
  const auto next = nextEvent();
  if (!next || *next > m_target) {
    m_now = m_target;
    return false;
  }
  m_now = *next;
  return true;
}

/// When the next timer falls due that could run, or the next blocked task goes on.
std::optional<Ticks> VirtualScheduler::nextEvent() const {
  std::optional<Ticks> next;
  const auto consider = [&](std::optional<Ticks> due) {
    if (due && (!next || *due < *next)) {
      next = due;
    }
  };
  for (const auto& queue : m_queues) {
    if (queue->mayRun()) {
      consider(queue->core.nextDue());
    }
  }
  for (const Blocked* blocked : m_blocked) {
    consider(blocked->until);
  }
  return next;
}

bool VirtualScheduler::isNothingReady() const {
  return std::ranges::none_of(
      m_queues, [&](const auto& queue) { return queue->mayRun() && queue->core.isReady(m_now); });
}

void VirtualScheduler::switchTo(Party& next, Party& self) {
  std::unique_lock lock(m_mutex);
  m_running = &next;
  next.wake.notify_one();
  self.wake.wait(lock, [&] { return m_running == &self; });
}

} // namespace tidewell::test
