#pragma once

#include "base/TaskQueue.h"
#include "platform/linux/loop/EpollLoop.h"
#include "platform/linux/network/LinuxPathMonitor.h"
#include "platform/linux/network/RouteSocket.h"
#include "support/DnsFiles.h"
#include "support/LoopRunner.h"
#include "support/NetworkNamespace.h"

#include <memory>
#include <utility>

namespace tidewell::test {

/// A network namespace with an Ethernet interface "wan0", without routes, watched by the path
/// monitor in real time. "far0" is the other end of its cable.
class KernelMachine {
public:
  /// Null if the machine does not allow network namespaces.
  static std::unique_ptr<KernelMachine> make() {
    auto network = NetworkNamespace::enter();
    if (!network) {
      return nullptr;
    }
    // No autoconfiguration: only the test changes anything.
    shell("sysctl -qw net.ipv6.conf.all.disable_ipv6=1 net.ipv6.conf.default.disable_ipv6=1");
    EXPECT_TRUE(shell("ip link add wan0 type veth peer name far0 && ip link set far0 up && "
                      "ip link set wan0 up && ip addr add 192.0.2.1/24 dev wan0"));
    return std::unique_ptr<KernelMachine>(new KernelMachine(std::move(network)));
  }

  void connect() { EXPECT_TRUE(shell("ip route replace default via 192.0.2.254")); }
  void disconnect() { EXPECT_TRUE(shell("ip route del default")); }

  /// Runs the loop for this time.
  void serve(Seconds seconds) {
    loop.postAfter(seconds, [this] { loop.quit(); });
    loop.run();
  }

private:
  explicit KernelMachine(std::unique_ptr<NetworkNamespace> entered) : network(std::move(entered)) {}

public:
  std::unique_ptr<NetworkNamespace> network;
  EpollLoop loop;
  LoopScheduler scheduler{loop};
  std::unique_ptr<WorkQueue> queue = scheduler.makeSerialQueue("com.halden.tidewell.test");
  RouteSocket socket;
  DnsFiles dns;
  LinuxPathMonitor monitor{loop, socket, {}, network->sysfsRoot(), dns.places};
};

} // namespace tidewell::test
