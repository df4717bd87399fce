#include "base/ThreadScheduler.h"

#include <algorithm>
#include <functional>
#include <string_view>
#include <utility>

#include <pthread.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace tidewell {

namespace {

// Work that nobody waits for yields to what the user looks at.
constexpr int utilityNice = 5;

// As many as are wanted at once day by day: neither are threads made and ended all the time, nor
// do those of a crowded moment stay.
constexpr std::size_t spareWorkers = 3;

/// A worker queue as the rest of the program sees it; closes it when destroyed.
class WorkerQueueFace final : public WorkQueue {
public:
  /// `onUse` runs before anything is handed to the queue.
  WorkerQueueFace(std::shared_ptr<WorkerQueue> queue, std::function<void()> onUse)
      : m_queue(std::move(queue)), m_onUse(std::move(onUse)) {}
  ~WorkerQueueFace() override { m_queue->close(); }

  void post(Task task) override {
    m_onUse();
    m_queue->post(std::move(task));
  }
  void postAfter(Seconds delay, Task task) override {
    m_onUse();
    m_queue->add(delay, Ticks::zero(), std::move(task));
  }
  std::unique_ptr<Timer> repeat(Seconds first, Seconds period, Task task) override {
    m_onUse();
    return std::make_unique<WorkerTimer>(m_queue,
                                         m_queue->add(first, toPeriod(period), std::move(task)));
  }
  [[nodiscard]] bool isCurrent() const override { return m_queue->isWorker(); }

private:
  std::shared_ptr<WorkerQueue> m_queue;
  std::function<void()> m_onUse;
};

void nameThread(std::string_view label) {
  // The kernel keeps fifteen characters.
  const std::string name(label.substr(label.rfind('.') + 1, 15));
  pthread_setname_np(pthread_self(), name.c_str());
}

void removeLeeway() {
  // By default the kernel may delay a wake-up by 50 us to join it with others.
  prctl(PR_SET_TIMERSLACK, 1UL, 0UL, 0UL, 0UL);
}

} // namespace

ThreadScheduler::ThreadScheduler(MainQueue& main)
    : m_main(main), m_background(std::make_shared<WorkerQueue>()) {
  auto startOnce = [this, flag = std::make_shared<std::once_flag>()] {
    std::call_once(*flag, [this] { startBackgroundWorker(); });
  };
  m_backgroundFace = std::make_unique<WorkerQueueFace>(m_background, std::move(startOnce));
}

ThreadScheduler::~ThreadScheduler() {
  std::vector<std::thread> threads;
  {
    const std::scoped_lock lock(m_mutex);
    m_ending = true;
    threads.swap(m_threads);
    if (m_retired.joinable()) {
      threads.push_back(std::move(m_retired));
    }
    for (const auto& queue : m_queues) {
      if (const auto open = queue.lock()) {
        open->close();
      }
    }
  }
  m_background->close();
  for (std::thread& thread : threads) {
    thread.join();
  }
}

std::unique_ptr<WorkQueue> ThreadScheduler::makeSerialQueue(std::string label) {
  auto queue = std::make_shared<WorkerQueue>();
  startSerialWorker(queue, label);
  return std::make_unique<WorkerQueueFace>(std::move(queue), [] {});
}

void ThreadScheduler::startSerialWorker(std::shared_ptr<WorkerQueue> queue,
                                        const std::string& label) {
  const std::scoped_lock lock(m_mutex);
  if (m_ending) {
    return;
  }
  m_queues.push_back(queue);
  m_threads.emplace_back([this, queue = std::move(queue), label] {
    nameThread(label);
    removeLeeway();
    setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), utilityNice);
    serve(*queue, false);
  });
}

void ThreadScheduler::startBackgroundWorker() {
  const std::scoped_lock lock(m_mutex);
  if (m_ending) {
    return;
  }
  m_threads.emplace_back([this] {
    nameThread("background");
    removeLeeway();
    serve(*m_background, true);
    retire();
  });
}

void ThreadScheduler::serve(WorkerQueue& queue, bool isBackground) {
  const auto self = std::this_thread::get_id();
  queue.enlist();
  m_main.addHelper(self);
  while (true) {
    auto [work, lastWaiting] = queue.take();
    if (!work) {
      break;
    }
    if (isBackground && lastWaiting) {
      // A timer that falls due must find a worker even while the others block for long.
      startBackgroundWorker();
    }
    (*work)();
    work.reset();
    m_main.help();
    if (isBackground && queue.leave(spareWorkers)) {
      break;
    }
  }
  m_main.removeHelper(self);
}

void ThreadScheduler::retire() {
  std::thread previous;
  {
    const std::scoped_lock lock(m_mutex);
    const auto isThis = [](const std::thread& thread) {
      return thread.get_id() == std::this_thread::get_id();
    };
    // Not there any more when all are ending.
    if (const auto found = std::ranges::find_if(m_threads, isThis); found != m_threads.end()) {
      previous = std::exchange(m_retired, std::move(*found));
      m_threads.erase(found);
    }
  }
  if (previous.joinable()) {
    previous.join();
  }
}

} // namespace tidewell
