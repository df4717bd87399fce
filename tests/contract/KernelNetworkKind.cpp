#include "contract/NetworkContract.h"
#include "platform/linux/bus/SessionBus.h"
#include "platform/linux/loop/EpollLoop.h"
#include "platform/linux/loop/FileDescriptor.h"
#include "platform/linux/network/DeviceTable.h"
#include "platform/linux/network/LinuxConfigurationStore.h"
#include "platform/linux/network/LinuxInterfaceCounters.h"
#include "platform/linux/network/RouteSocket.h"
#include "support/NetworkNamespace.h"

#include <array>
#include <memory>
#include <utility>
#include <vector>

#include <linux/if_packet.h>
#include <net/ethernet.h>
#include <net/if.h>
#include <sys/socket.h>

namespace tidewell::test {
namespace {

/// The interfaces of a new network namespace.
class KernelNetwork final : public NetworkUnderTest {
public:
  static std::unique_ptr<NetworkUnderTest> make() {
    auto network = NetworkNamespace::enter();
    if (!network) {
      return nullptr;
    }
    // No router solicitations: only the test sends.
    shell("sysctl -qw net.ipv6.conf.all.disable_ipv6=1 net.ipv6.conf.default.disable_ipv6=1");
    return std::unique_ptr<NetworkUnderTest>(new KernelNetwork(std::move(network)));
  }

  InterfaceCounters& counters() override { return m_counters; }
  ConfigurationStore& configuration() override { return m_configuration; }

  void add(const std::string& interface) override {
    const std::string peer = interface + "p";
    EXPECT_TRUE(shell("ip link add " + interface + " type veth peer name " + peer +
                      " && ip link set " + peer + " up && ip link set " + interface +
                      " arp off up && ip addr add 192.0.2.1/32 dev " + interface));
  }
  void remove(const std::string& interface) override {
    EXPECT_TRUE(shell("ip link del " + interface));
  }
  void route(const std::optional<std::string>& interface) override {
    if (interface) {
      EXPECT_TRUE(shell("ip route replace default dev " + *interface));
    } else {
      EXPECT_TRUE(shell("ip route del default"));
    }
  }
  void send(const std::string& interface, std::int64_t bytes) override {
    const FileDescriptor packets(::socket(AF_PACKET, SOCK_RAW | SOCK_CLOEXEC, 0));
    sockaddr_ll target{};
    target.sll_family = AF_PACKET;
    target.sll_ifindex = static_cast<int>(::if_nametoindex(interface.c_str()));
    const std::vector<char> frame(static_cast<std::size_t>(bytes));
    EXPECT_EQ(::sendto(packets.get(), frame.data(), frame.size(), 0,
                       reinterpret_cast<const sockaddr*>(&target), sizeof target),
              bytes);
  }

private:
  explicit KernelNetwork(std::unique_ptr<NetworkNamespace> network)
      : m_network(std::move(network)) {}

  std::unique_ptr<NetworkNamespace> m_network;
  RouteSocket m_socket; // opened on first use, inside the namespace
  DeviceTable m_table;  // likewise
  LinuxInterfaceCounters m_counters{m_table};
  EpollLoop m_loop;
  SessionBus m_noBus{m_loop, ""};
  LinuxConfigurationStore m_configuration{m_loop, m_socket, m_noBus};
};

INSTANTIATE_TEST_SUITE_P(Kernel, NetworkContract,
                         testing::Values(NetworkKind{"kernel", &KernelNetwork::make}),
                         [](const auto& kind) { return kind.param.name; });

} // namespace
} // namespace tidewell::test
