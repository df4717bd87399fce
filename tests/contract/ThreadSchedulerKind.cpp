#include "base/ThreadScheduler.h"
#include "contract/SchedulerContract.h"
#include "platform/linux/loop/EventLoop.h"

#include <atomic>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <latch>
#include <string>
#include <thread>

namespace tidewell::test {
namespace {

class ThreadWorld final : public SchedulerUnderTest {
public:
  Scheduler& scheduler() override { return m_scheduler; }
  void run(Seconds span) override {
    m_loop.postAfter(span, [this] { m_loop.quit(); });
    m_loop.run();
  }
  void block(Seconds span) override {
    std::this_thread::sleep_for(std::chrono::duration<double>(span));
  }

private:
  EventLoop m_loop;
  ThreadScheduler m_scheduler{m_loop};
};

INSTANTIATE_TEST_SUITE_P(Threads, SchedulerContract,
                         testing::Values(SchedulerKind{
                             "threads", [] { return std::make_unique<ThreadWorld>(); }}),
                         [](const auto& kind) { return kind.param.name; });

std::size_t backgroundThreads() {
  std::size_t count = 0;
  for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
    std::ifstream file(task.path() / "comm");
    std::string name;
    count += std::getline(file, name) && name == "background" ? 1 : 0;
  }
  return count;
}

TEST(ThreadScheduler, LosesTheThreadsOfACrowdedMoment) {
  constexpr std::size_t crowd = 30;
  EventLoop loop;
  ThreadScheduler scheduler(loop);
  for (int round = 0; round < 3; ++round) {
    std::latch everybodyIsThere(crowd + 1);
    std::latch isCounted(1);
    std::latch everybodyIsDone(crowd + 1);
    for (std::size_t task = 0; task < crowd; ++task) {
      scheduler.background().post([&] {
        everybodyIsThere.arrive_and_wait();
        isCounted.wait();
        everybodyIsDone.count_down();
      });
    }
    everybodyIsThere.arrive_and_wait();
    EXPECT_GE(backgroundThreads(), crowd);
    isCounted.count_down();
    everybodyIsDone.arrive_and_wait();
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (backgroundThreads() > 5 && std::chrono::steady_clock::now() < deadline) {
      std::this_thread::yield();
    }
    EXPECT_LE(backgroundThreads(), 5U);
    EXPECT_GE(backgroundThreads(), 1U);
  }
}

TEST(ThreadScheduler, EndsWhileThreadsRetire) {
  for (int round = 0; round < 50; ++round) {
    EventLoop loop;
    std::atomic<int> done = 0;
    {
      ThreadScheduler scheduler(loop);
      std::latch together(10);
      for (int task = 0; task < 10; ++task) {
        scheduler.background().post([&] {
          together.arrive_and_wait();
          ++done;
        });
      }
      while (done == 0) {
        std::this_thread::yield();
      }
    }
    EXPECT_EQ(done, 10);
  }
}

} // namespace
} // namespace tidewell::test
