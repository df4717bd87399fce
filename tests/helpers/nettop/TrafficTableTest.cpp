#include "helpers/nettop/TrafficTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>

namespace tidewell::nettop {
namespace {

SocketTraffic socketTraffic(std::uint32_t owner, std::uint64_t received, std::uint64_t sent) {
  SocketTraffic traffic{};
  traffic.owner.process = owner;
  traffic.received = received;
  traffic.sent = sent;
  return traffic;
}

SocketTraffic tunnelled(std::uint32_t owner, std::uint64_t received, std::uint64_t sent) {
  SocketTraffic traffic = socketTraffic(owner, received, sent);
  traffic.tunnelReceived = received;
  traffic.tunnelSent = sent;
  traffic.owner.mayTunnel = 1;
  return traffic;
}

ProcessRecord process(const char* name, std::uint32_t user = 1000, bool servesTunnel = false) {
  ProcessRecord record{};
  record.user = user;
  record.servesTunnel = servesTunnel ? 1 : 0;
  std::strncpy(record.name, name, sizeof record.name);
  return record;
}

using Rows = std::vector<ProcessTraffic>;

/// The rows of these sockets and processes, by process.
Rows rowsOf(const std::vector<SocketTraffic>& sockets,
            const std::map<std::uint32_t, ProcessRecord>& processes) {
  TrafficTable table;
  std::ranges::for_each(sockets, [&table](const SocketTraffic& one) { table.add(one); });
  for (const auto& [owner, record] : processes) {
    table.name(owner, record);
  }
  Rows rows = table.rows();
  std::ranges::sort(rows, {}, &ProcessTraffic::process);
  return rows;
}

const ProcessRecord vpn = process("vpn", 0, true);

TEST(TrafficTable, AddsUpTheSocketsOfAProcess) {
  EXPECT_EQ(rowsOf({socketTraffic(7, 10, 1), socketTraffic(8, 5, 5), socketTraffic(7, 20, 2)},
                   {{7, process("one")}, {8, process("two", 0)}}),
            (Rows{{"one", 7, 1000, 30, 3}, {"two", 8, 0, 5, 5}}));
}

TEST(TrafficTable, KeepsWhatIsNobodysInOneRow) {
  EXPECT_EQ(rowsOf({socketTraffic(0, 10, 0), socketTraffic(5, 1, 1)}, {}),
            (Rows{{"unknown", 0, ProcessTraffic::nobody, 11, 1}}));
}

TEST(TrafficTable, TellsWhatHadNoRoom) {
  TrafficTable table;
  table.addLost(0, 0);
  EXPECT_TRUE(table.rows().empty());
  table.addLost(10, 1);
  EXPECT_EQ(table.rows(), (Rows{{"too many sockets", 0, ProcessTraffic::nobody, 10, 1}}));
}

TEST(TrafficTable, LeavesOutWhoMovedNothing) {
  EXPECT_TRUE(
      rowsOf({socketTraffic(7, 0, 0)}, {{7, process("idle")}, {9, process("never heard of")}})
          .empty());
}

TEST(TrafficTable, TakesANameThatFillsItsPlace) {
  const std::string name(longestName, 'n');
  EXPECT_EQ(rowsOf({socketTraffic(7, 1, 0)}, {{7, process(name.c_str())}}).at(0).name, name);
}

TEST(TrafficTable, LeavesATunnelsServerWithWhatItAdds) {
  EXPECT_EQ(
      rowsOf({tunnelled(7, 1000, 100), socketTraffic(8, 1060, 160), socketTraffic(9, 3, 4)},
             {{7, process("browser")}, {8, vpn}, {9, process("other")}}),
      (Rows{{"browser", 7, 1000, 1000, 100}, {"vpn", 8, 0, 60, 60}, {"other", 9, 1000, 3, 4}}));
}

TEST(TrafficTable, TakesTunnelTrafficFromTheBusiestServerFirst) {
  EXPECT_EQ(rowsOf({tunnelled(7, 1000, 0), socketTraffic(8, 900, 0), socketTraffic(9, 300, 0)},
                   {{7, process("browser")}, {8, vpn}, {9, process("quiet", 0, true)}}),
            (Rows{{"browser", 7, 1000, 1000, 0}, {"quiet", 9, 0, 200, 0}}));
}

TEST(TrafficTable, DoesNotTakeTheInterfacesOfOtherNamespacesForTunnels) {
  SocketTraffic elsewhere = tunnelled(7, 1000, 0);
  elsewhere.owner.mayTunnel = 0;
  EXPECT_EQ(
      rowsOf({elsewhere, socketTraffic(8, 1060, 0)}, {{7, process("contained")}, {8, vpn}}).back(),
      (ProcessTraffic{"vpn", 8, 0, 1060, 0}));
}

TEST(TrafficTable, NeverTakesMoreThanThereIs) {
  EXPECT_EQ(rowsOf({tunnelled(7, 1000, 1000), socketTraffic(8, 10, 2000)},
                   {{7, process("browser")}, {8, vpn}})
                .back(),
            (ProcessTraffic{"vpn", 8, 0, 0, 1000}));
}

} // namespace
} // namespace tidewell::nettop
