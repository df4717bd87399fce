#include "connectivity/NetworkMonitor.h"
#include "platform/linux/bus/SessionBus.h"
#include "platform/linux/network/LinuxConfigurationStore.h"
#include "platform/linux/network/LinuxInterfaceAddresses.h"
#include "platform/linux/process/LinuxHttpClient.h"
#include "support/FakeMachine.h"
#include "support/KernelMachine.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <chrono>

namespace tidewell::test {
namespace {

/// The connectivity monitor on the kernel's network, with a helper for the public address that
/// hangs.
class LinkLoss : public testing::Test {
protected:
  void SetUp() override {
    machine = KernelMachine::make();
    if (!machine) {
      GTEST_SKIP() << "this machine does not allow network namespaces";
    }
    writeInPlace(directory / "helper", "#!/bin/sh\nexec sleep 100\n");
    std::filesystem::permissions(directory / "helper", std::filesystem::perms::owner_all);
  }

  std::unique_ptr<KernelMachine> machine;
  TemporaryDirectory directory;
};

TEST_F(LinkLoss, IsPublishedWithinASecondThoughTheDetailsAreFetchedFirst) {
  LinuxHttpClient http(machine->loop, directory / "helper");
  LinuxPathMonitor paths(
      machine->loop, machine->socket, [&](bool isSatisfied) { http.setPathSatisfied(isSatisfied); },
      machine->network->sysfsRoot(), machine->dns.places);
  SessionBus noBus(machine->loop, "");
  LinuxConfigurationStore configuration(machine->loop, machine->socket, noBus, machine->dns.places);
  LinuxInterfaceAddresses addresses;
  FakeMachine fakes;
  machine->connect();
  auto monitor = NetworkMonitor::make({machine->scheduler, fakes.clock, fakes.counters,
                                       configuration, addresses, paths, http, fakes.children});
  machine->serve(0.3);
  EXPECT_TRUE(monitor->isConnected.get());
  EXPECT_EQ(monitor->connectionInfo.get().ipAddress, "--") << "the first fetch is under way";

  const auto lost = std::chrono::steady_clock::now();
  EXPECT_TRUE(shell("ip link set far0 down"));
  EXPECT_TRUE(runUntil(machine->loop, [&] { return !monitor->isConnected.get(); }));
  EXPECT_LT(std::chrono::steady_clock::now() - lost, std::chrono::seconds(1));
  EXPECT_EQ(monitor->connectionInfo.get().interfaceName, "Other (wan0)");
  EXPECT_EQ(monitor->connectionInfo.get().publicIP, "--");
}

} // namespace
} // namespace tidewell::test
