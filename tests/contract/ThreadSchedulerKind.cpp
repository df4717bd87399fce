#include "base/ThreadScheduler.h"
#include "contract/SchedulerContract.h"
#include "platform/linux/EventLoop.h"

#include <chrono>
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

} // namespace
} // namespace tidewell::test
