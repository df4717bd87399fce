#pragma once

#include "base/MainQueue.h"
#include "base/Scheduler.h"
#include "base/WorkerQueue.h"

#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace tidewell {

/// Queues on real threads around a main queue that somebody else runs.
///
/// Each serial queue has a thread of its own, named after the last word of the queue's label, at
/// utility priority. The background queue grows a thread whenever none waits for work, and loses
/// one whenever more than enough do. Constructed and destroyed on the main thread; the destructor
/// waits for the tasks that are running, so whatever they wait for must have been told to end.
class ThreadScheduler final : public Scheduler {
public:
  explicit ThreadScheduler(MainQueue& main);
  ~ThreadScheduler() override;

  [[nodiscard]] WorkQueue& main() override { return m_main; }
  [[nodiscard]] WorkQueue& background() override { return *m_backgroundFace; }
  [[nodiscard]] std::unique_ptr<WorkQueue> makeSerialQueue(std::string label) override;

private:
  void startSerialWorker(std::shared_ptr<WorkerQueue> queue, const std::string& label);
  void startBackgroundWorker();
  void serve(WorkerQueue& queue, bool isBackground);
  void retire();

  MainQueue& m_main;
  std::shared_ptr<WorkerQueue> m_background;
  std::unique_ptr<WorkQueue> m_backgroundFace;
  std::mutex m_mutex;
  bool m_ending = false;                            // guarded by m_mutex
  std::vector<std::weak_ptr<WorkerQueue>> m_queues; // guarded by m_mutex
  std::vector<std::thread> m_threads;               // guarded by m_mutex
  std::thread m_retired;                            // guarded by m_mutex
};

} // namespace tidewell
