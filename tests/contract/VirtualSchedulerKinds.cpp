#include "contract/SchedulerContract.h"
#include "support/VirtualScheduler.h"

namespace tidewell::test {
namespace {

class VirtualWorld final : public SchedulerUnderTest {
public:
  explicit VirtualWorld(std::uint64_t seed) : m_scheduler(seed) {}
  Scheduler& scheduler() override { return m_scheduler; }
  void run(Seconds span) override { m_scheduler.advance(span); }
  void block(Seconds span) override { m_scheduler.block(span); }

private:
  VirtualScheduler m_scheduler;
};

std::vector<SchedulerKind> seededKinds() {
  std::vector<SchedulerKind> kinds;
  for (std::uint64_t seed = 0; seed < 48; ++seed) {
    kinds.push_back({"virtual" + std::to_string(seed),
                     [seed] { return std::make_unique<VirtualWorld>(seed); }});
  }
  return kinds;
}

INSTANTIATE_TEST_SUITE_P(Virtual, SchedulerContract, testing::ValuesIn(seededKinds()),
                         [](const auto& kind) { return kind.param.name; });

} // namespace
} // namespace tidewell::test
