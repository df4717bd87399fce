#include "contract/NetworkContract.h"
#include "support/FakeMachine.h"

namespace tidewell::test {
namespace {

class FakeNetwork final : public NetworkUnderTest {
public:
  FakeNetwork() { m_machine.configuration.primary = std::nullopt; }
  InterfaceCounters& counters() override { return m_machine.counters; }
  ConfigurationStore& configuration() override { return m_machine.configuration; }
  void add(const std::string& interface) override { m_machine.counters.interfaces[interface] = {}; }
  void remove(const std::string& interface) override {
    m_machine.counters.interfaces.erase(interface);
    if (m_machine.configuration.primary == interface) {
      m_machine.configuration.primary = std::nullopt;
    }
  }
  void send(const std::string& interface, std::int64_t bytes) override {
    m_machine.counters.interfaces.at(interface).bytesOut += bytes;
  }
  void route(const std::optional<std::string>& interface) override {
    if (interface) {
      m_machine.configuration.primary = interface;
    }
  }

private:
  FakeMachine m_machine;
};

INSTANTIATE_TEST_SUITE_P(Fake, NetworkContract,
                         testing::Values(NetworkKind{
                             "fake", [] { return std::make_unique<FakeNetwork>(); }}),
                         [](const auto& kind) { return kind.param.name; });

} // namespace
} // namespace tidewell::test
