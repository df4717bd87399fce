#include "contract/PathContract.h"
#include "support/FakeMachine.h"

namespace tidewell::test {
namespace {

class FakePath final : public PathUnderTest {
public:
  PathMonitor& monitor() override { return m_machine.paths; }
  WorkQueue& queue() override { return *m_queue; }
  void connect() override { m_machine.paths.become({true, false, true, false}); }
  void disconnect() override { m_machine.paths.become({}); }
  void stir() override { connect(); }
  void settle() override { m_machine.scheduler.advance(1.0); }

private:
  FakeMachine m_machine;
  std::unique_ptr<WorkQueue> m_queue = m_machine.scheduler.makeSerialQueue("reports");
};

INSTANTIATE_TEST_SUITE_P(Fake, PathContract,
                         testing::Values(PathKind{"fake",
                                                  [] { return std::make_unique<FakePath>(); }}),
                         [](const auto& kind) { return kind.param.name; });

} // namespace
} // namespace tidewell::test
