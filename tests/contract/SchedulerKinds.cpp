#include "base/TaskQueue.h"
#include "contract/SchedulerContract.h"
#include "platform/linux/loop/EpollLoop.h"
#include "support/VirtualScheduler.h"

namespace tidewell::test {
namespace {

class VirtualWorld final : public SchedulerUnderTest {
public:
  explicit VirtualWorld(std::uint64_t seed) : m_scheduler(seed) {}
  Scheduler& scheduler() override { return m_scheduler; }
  void run(Seconds span) override { m_scheduler.advance(span); }
  Async<> sleep(Seconds span) override { return m_scheduler.sleep(span); }

private:
  VirtualScheduler m_scheduler;
};

class RealWorld final : public SchedulerUnderTest {
public:
  Scheduler& scheduler() override { return m_scheduler; }
  void run(Seconds span) override {
    m_loop.postAfter(span, [this] { m_loop.quit(); });
    m_loop.run();
  }
  Async<> sleep(Seconds span) override {
    Waiter waiter;
    const auto timer = m_loop.repeat(span, 0.0, [&waiter] { waiter.resume(); });
    co_await waiter;
  }

private:
  EpollLoop m_loop;
  LoopScheduler m_scheduler{m_loop};
};

std::vector<SchedulerKind> kinds() {
  std::vector<SchedulerKind> kinds = {{"real", [] { return std::make_unique<RealWorld>(); }}};
  for (std::uint64_t seed = 0; seed < 48; ++seed) {
    kinds.push_back({"virtual" + std::to_string(seed),
                     [seed] { return std::make_unique<VirtualWorld>(seed); }});
  }
  return kinds;
}

INSTANTIATE_TEST_SUITE_P(Kinds, SchedulerContract, testing::ValuesIn(kinds()),
                         [](const auto& kind) { return kind.param.name; });

} // namespace
} // namespace tidewell::test
