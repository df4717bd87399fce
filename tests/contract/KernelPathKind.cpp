#include "contract/PathContract.h"
#include "support/KernelMachine.h"

namespace tidewell::test {
namespace {

class KernelPath final : public PathUnderTest {
public:
  static std::unique_ptr<PathUnderTest> make() {
    auto machine = KernelMachine::make();
    return machine ? std::make_unique<KernelPath>(std::move(machine)) : nullptr;
  }
  explicit KernelPath(std::unique_ptr<KernelMachine> machine) : m_machine(std::move(machine)) {}

  PathMonitor& monitor() override { return m_machine->monitor; }
  WorkQueue& queue() override { return *m_machine->queue; }
  void connect() override { m_machine->connect(); }
  void disconnect() override { m_machine->disconnect(); }
  void stir() override { EXPECT_TRUE(shell("ip addr add 198.51.100.1/24 dev far0")); }
  void settle() override { m_machine->serve(0.4); }

private:
  std::unique_ptr<KernelMachine> m_machine;
};

INSTANTIATE_TEST_SUITE_P(Kernel, PathContract,
                         testing::Values(PathKind{"kernel", &KernelPath::make}),
                         [](const auto& kind) { return kind.param.name; });

} // namespace
} // namespace tidewell::test
