#include "helpers/nettop/TrafficTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

namespace tidewell::nettop {
namespace {

SocketTraffic socket(std::uint32_t owner, std::uint64_t received, std::uint64_t sent) {
  SocketTraffic traffic{};
  traffic.owner = owner;
  traffic.received = received;
  traffic.sent = sent;
  return traffic;
}

SocketTraffic tunnelled(std::uint32_t owner, std::uint64_t received, std::uint64_t sent) {
  SocketTraffic traffic = socket(owner, received, sent);
  traffic.tunnelReceived = received;
  traffic.tunnelSent = sent;
  traffic.mayTunnel = 1;
  return traffic;
}

ProcessRecord process(const char* name, std::uint32_t user = 1000, bool servesTunnel = false) {
  ProcessRecord record{};
  record.user = user;
  record.servesTunnel = servesTunnel ? 1 : 0;
  std::strncpy(record.name, name, sizeof record.name);
  return record;
}

std::vector<ProcessTraffic> sorted(const TrafficTable& table) {
  auto rows = table.rows();
  std::ranges::sort(rows, {}, &ProcessTraffic::process);
  return rows;
}

TEST(TrafficTable, AddsUpTheSocketsOfAProcess) {
  TrafficTable table;
  table.add(socket(7, 10, 1));
  table.add(socket(8, 5, 5));
  table.add(socket(7, 20, 2));
  table.name(7, process("one"));
  table.name(8, process("two", 0));
  EXPECT_EQ(sorted(table),
            (std::vector<ProcessTraffic>{{"one", 7, 1000, 30, 3}, {"two", 8, 0, 5, 5}}));
}

TEST(TrafficTable, KeepsWhatIsNobodysInOneRow) {
  TrafficTable table;
  table.add(socket(0, 10, 0));
  table.add(socket(5, 1, 1));
  EXPECT_EQ(table.rows(),
            (std::vector<ProcessTraffic>{{"unknown", 0, ProcessTraffic::nobody, 11, 1}}));
}

TEST(TrafficTable, LeavesOutWhoMovedNothing) {
  TrafficTable table;
  table.add(socket(7, 0, 0));
  table.name(7, process("idle"));
  table.name(9, process("never heard of"));
  EXPECT_TRUE(table.rows().empty());
}

TEST(TrafficTable, TakesANameThatFillsItsPlace) {
  TrafficTable table;
  table.add(socket(7, 1, 0));
  table.name(7, process(std::string(longestName, 'n').c_str()));
  EXPECT_EQ(table.rows().at(0).name, std::string(longestName, 'n'));
}

TEST(TrafficTable, LeavesATunnelsServerWithWhatItAdds) {
  TrafficTable table;
  table.add(tunnelled(7, 1000, 100));
  table.add(socket(8, 1060, 160));
  table.add(socket(9, 3, 4));
  table.name(7, process("browser"));
  table.name(8, process("vpn", 0, true));
  table.name(9, process("other"));
  EXPECT_EQ(sorted(table),
            (std::vector<ProcessTraffic>{
                {"browser", 7, 1000, 1000, 100}, {"vpn", 8, 0, 60, 60}, {"other", 9, 1000, 3, 4}}));
}

TEST(TrafficTable, TakesTunnelTrafficFromTheBusiestServerFirst) {
  TrafficTable table;
  table.add(tunnelled(7, 1000, 0));
  table.add(socket(8, 900, 0));
  table.add(socket(9, 300, 0));
  table.name(7, process("browser"));
  table.name(8, process("busy", 0, true));
  table.name(9, process("quiet", 0, true));
  EXPECT_EQ(sorted(table),
            (std::vector<ProcessTraffic>{{"browser", 7, 1000, 1000, 0}, {"quiet", 9, 0, 200, 0}}));
}

TEST(TrafficTable, DoesNotTakeTheInterfacesOfOtherNamespacesForTunnels) {
  TrafficTable table;
  SocketTraffic elsewhere = tunnelled(7, 1000, 0);
  elsewhere.mayTunnel = 0;
  table.add(elsewhere);
  table.add(socket(8, 1060, 0));
  table.name(7, process("contained"));
  table.name(8, process("vpn", 0, true));
  EXPECT_EQ(sorted(table).back(), (ProcessTraffic{"vpn", 8, 0, 1060, 0}));
}

TEST(TrafficTable, NeverTakesMoreThanThereIs) {
  TrafficTable table;
  table.add(tunnelled(7, 1000, 1000));
  table.add(socket(8, 10, 2000));
  table.name(7, process("browser"));
  table.name(8, process("vpn", 0, true));
  EXPECT_EQ(sorted(table).back(), (ProcessTraffic{"vpn", 8, 0, 0, 1000}));
}

} // namespace
} // namespace tidewell::nettop
