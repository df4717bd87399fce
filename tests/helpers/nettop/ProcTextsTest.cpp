#include "helpers/nettop/DeviceTraffic.h"
#include "helpers/nettop/SocketHolders.h"

#include <gtest/gtest.h>

namespace tidewell::nettop {
namespace {

using Names = std::set<std::string>;

TEST(DefaultDevices, AreThoseOfRoutesToEverywhere) {
  EXPECT_EQ(defaultDevices("Iface\tDestination\tGateway \tFlags\tRefCnt\tUse\tMetric\tMask\t\tMTU\n"
                           "eth0\t00000000\t0101A8C0\t0003\t0\t0\t0\t00000000\t0\t0\t0   \n"
                           "eth1\t0001A8C0\t00000000\t0001\t0\t0\t0\t00FFFFFF\t0\t0\t0   \n"
                           "tun0\t00000000\t00000000\t0001\t0\t0\t0\t00000080\t0\t0\t0   \n"
                           "eth0\t00000000\t0201A8C0\t0003\t0\t0\t9\t00000000\t0\t0\t0   \n"),
            Names{"eth0"});
  EXPECT_TRUE(defaultDevices("").empty());
  EXPECT_TRUE(defaultDevices("eth0\t00000000").empty());
}

TEST(DefaultDevices, OfIpv6LeaveOutTheLoopback) {
  const std::string everywhere = "00000000000000000000000000000000";
  const std::string rest =
      " 00 00000000000000000000000000000000 ffffffff 00000001 00000000 00200200 ";
  EXPECT_EQ(defaultDevicesIpv6(everywhere + " 00 " + everywhere + rest + "      lo\n" + everywhere +
                               " 00 " + everywhere + rest + "    eth0\n" + everywhere + " 40 " +
                               everywhere + rest + "    eth1\n"),
            Names{"eth0"});
  EXPECT_TRUE(defaultDevicesIpv6(everywhere + " 00 ").empty());
}

TEST(SocketInode, IsReadFromTheLinkOfADescriptor) {
  EXPECT_EQ(socketInode("socket:[12345]"), 12345U);
  EXPECT_EQ(socketInode("socket:[4294967295]"), 4294967295U);
  for (const char* link : {"", "/dev/null", "socket:[", "socket:[]", "socket:[12", "socket:[1x]",
                           "socket:[-1]", "socket:[4294967296]", "pipe:[12]"}) {
    EXPECT_EQ(socketInode(link), std::nullopt) << link;
  }
}

TEST(ExecutableName, IsTheLastPartOfItsPath) {
  EXPECT_EQ(executableName("/usr/bin/curl"), "curl");
  EXPECT_EQ(executableName("/opt/a b/run (deleted)"), "run");
  EXPECT_EQ(executableName("alone"), "alone");
  EXPECT_EQ(executableName(""), "");
}

} // namespace
} // namespace tidewell::nettop
