#include "base/TaskQueue.h"

#include "base/Checked.h"

#include <deque>
#include <list>
#include <utility>

namespace tidewell {

void runAtOnce(const Task& task) {
  const Async<> work = task();
  if (!work.isDone()) {
    fatal("a task of the main queue waits");
  }
}

/// A task that was posted or fell due, or the next firing of a timer.
struct TaskQueue::Entry {
  explicit Entry(Task work) : task(std::move(work)) {}

  Task task;
  bool isReady = false; // the timer does not fire again while a firing waits
  bool isCancelled = false;
};

/// Shared with the functions that the loop holds for the queue.
struct TaskQueue::State : std::enable_shared_from_this<State> {
  State(WorkQueue& queueLoop, Kind kind) : loop(queueLoop), isSerial(kind == Kind::serial) {}

  void makeReady(std::shared_ptr<Entry> entry) {
    if (!std::exchange(entry->isReady, true)) {
      ready.push_back(std::move(entry));
      runLater();
    }
  }

  void runLater() {
    if (!std::exchange(isExpected, true)) {
      loop.post([weak = weak_from_this()] {
        if (const auto self = weak.lock()) {
          self->isExpected = false;
          self->run();
        }
      });
    }
  }

  void run() {
    running.remove_if([](const Async<>& task) { return task.isDone(); });
    while (!ready.empty() && (running.empty() || !isSerial)) {
      const std::shared_ptr<Entry> entry = std::move(ready.front());
      ready.pop_front();
      entry->isReady = false;
      if (!entry->isCancelled) {
        begin(entry->task());
        break;
      }
    }
    if (!ready.empty() && (running.empty() || !isSerial)) {
      runLater();
    }
  }

  void begin(Async<> task) {
    if (task.isDone()) {
      return;
    }
    running.push_back(std::move(task));
    running.back().start([weak = weak_from_this()] {
      if (const auto self = weak.lock()) {
        self->runLater();
      }
    });
  }

  WorkQueue& loop;
  const bool isSerial;
  bool isExpected = false; // `run` is posted
  std::deque<std::shared_ptr<Entry>> ready;
  std::list<Async<>> running;
  std::list<std::unique_ptr<Timer>> delays; // from `postAfter`
};

class TaskQueue::QueueTimer final : public Timer {
public:
  QueueTimer(std::shared_ptr<Entry> entry, std::unique_ptr<Timer> timer)
      : m_entry(std::move(entry)), m_timer(std::move(timer)) {}
  ~QueueTimer() override { m_entry->isCancelled = true; }

private:
  std::shared_ptr<Entry> m_entry;
  std::unique_ptr<Timer> m_timer;
};

TaskQueue::TaskQueue(WorkQueue& loop, Kind kind) : m_state(std::make_shared<State>(loop, kind)) {}

TaskQueue::~TaskQueue() {
  m_state->delays.clear();
  m_state->ready.clear();
  m_state->running.clear();
}

void TaskQueue::post(Task task) { m_state->makeReady(std::make_shared<Entry>(std::move(task))); }

void TaskQueue::postAfter(Seconds delay, Task task) {
  auto& delays = m_state->delays;
  const auto place = delays.emplace(delays.end());
  *place = m_state->loop.repeat(delay, 0.0,
                                [&delays, place, state = m_state.get(), task = std::move(task)] {
                                  state->makeReady(std::make_shared<Entry>(task));
                                  delays.erase(place); // the timer, and what it captured
                                });
}

std::unique_ptr<Timer> TaskQueue::repeat(Seconds first, Seconds period, Task task) {
  auto entry = std::make_shared<Entry>(std::move(task));
  auto timer = m_state->loop.repeat(first, period, [weak = std::weak_ptr(m_state), entry] {
    if (const auto state = weak.lock()) {
      state->makeReady(entry);
    }
  });
  return std::make_unique<QueueTimer>(std::move(entry), std::move(timer));
}

} // namespace tidewell
