#include "platform/linux/network/LinkKind.h"

#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <linux/if_arp.h>

namespace tidewell::test {
namespace {

using namespace std::string_view_literals;

struct Row {
  const char* title;
  LinkTraits traits;
  LinkKind kind;
};

TEST(LinkKind, FollowsFromWhatTheKernelTells) {
  const std::vector<Row> rows = {
      {"wireless", {"wlp3s0", ARPHRD_ETHER, "wlan", true, false}, LinkKind::wifi},
      {"wireless of an older driver", {"eth1", ARPHRD_ETHER, "", true, false}, LinkKind::wifi},
      {"wireless by its word", {"wlan0", ARPHRD_ETHER, "wlan", false, false}, LinkKind::wifi},
      {"cable", {"enp0s31f6", ARPHRD_ETHER, "", false, false}, LinkKind::wiredEthernet},
      {"bridge", {"br0", ARPHRD_ETHER, "bridge", false, false}, LinkKind::wiredEthernet},
      {"bond", {"bond0", ARPHRD_ETHER, "bond", false, false}, LinkKind::wiredEthernet},
      {"VLAN", {"eth0.5", ARPHRD_ETHER, "vlan", false, false}, LinkKind::wiredEthernet},
      {"modem", {"wwp0s20f0u3", ARPHRD_ETHER, "wwan", false, false}, LinkKind::cellular},
      {"modem by its name", {"wwan0", ARPHRD_NONE, "", false, false}, LinkKind::cellular},
      {"modem without frames", {"rmnet0", ARPHRD_RAWIP, "", false, false}, LinkKind::cellular},
      {"tunnel", {"tun0", ARPHRD_NONE, "", false, true}, LinkKind::other},
      {"tunnel of frames", {"tap0", ARPHRD_ETHER, "", false, true}, LinkKind::other},
      {"WireGuard", {"wg0", ARPHRD_NONE, "wireguard", false, false}, LinkKind::other},
      {"VXLAN", {"vx0", ARPHRD_ETHER, "vxlan", false, false}, LinkKind::other},
      {"Geneve", {"gnv0", ARPHRD_ETHER, "geneve", false, false}, LinkKind::other},
      {"GRE of frames", {"gre1", ARPHRD_ETHER, "gretap", false, false}, LinkKind::other},
      {"dial-up", {"ppp0", ARPHRD_PPP, "ppp", false, false}, LinkKind::other},
      {"dial-up by a modem", {"ppp0", ARPHRD_PPP, "ppp", false, false, true}, LinkKind::cellular},
      {"line of a modem", {"qmimux0", ARPHRD_NONE, "", false, false, true}, LinkKind::cellular},
      {"Bluetooth", {"bnep0", ARPHRD_ETHER, "bluetooth", false, false}, LinkKind::other},
      {"loopback", {"lo", ARPHRD_LOOPBACK, "", false, false}, LinkKind::other},
      {"unknown", {"eth0", -1, "", false, false}, LinkKind::other},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(linkKind(row.traits), row.kind) << row.title;
  }
}

class LinkTraitsTest : public testing::Test {
protected:
  TemporaryDirectory sysfs;

  void file(const std::string& name, std::string_view contents) {
    const auto path = sysfs / ("class/net/link0/" + name);
    std::filesystem::create_directories(path.parent_path());
    writeInPlace(path, contents);
  }
  void directory(const std::string& name) {
    std::filesystem::create_directories(sysfs / ("class/net/link0/" + name));
  }
  LinkTraits read() {
    return readLinkTraits(sysfs.path().string(), "link0", (sysfs / "proc").string());
  }
  void write(const std::string& name, std::string_view contents) {
    std::filesystem::create_directories((sysfs / name).parent_path());
    writeInPlace(sysfs / name, contents);
  }
};

TEST_F(LinkTraitsTest, TellADialUpLineOfAModem) {
  file("type", "512\n");
  EXPECT_FALSE(read().isOverModem) << "no modem";
  for (const auto* const port : {"class/wwan/wwan0at0", "class/usbmisc/cdc-wdm0",
                                 "bus/usb-serial/drivers/option1/ttyUSB0"}) {
    write(port, "");
    EXPECT_TRUE(read().isOverModem) << port;
    std::filesystem::remove(sysfs / port);
  }
  write("bus/usb-serial/drivers/ftdi_sio/ttyUSB0", "");
  write("class/usbmisc/hiddev0", "");
  write("bus/usb-serial/drivers/option1/module", "");
  EXPECT_FALSE(read().isOverModem) << "other devices";
}

TEST_F(LinkTraitsTest, TellALineOverEthernetFromOneOfAModem) {
  file("type", "512\n");
  write("class/usbmisc/cdc-wdm0", "");
  write("proc/net/pppoe", "Id       Address              Device\n");
  EXPECT_TRUE(read().isOverModem);
  write("proc/net/pppoe", "Id       Address              Device\n"
                          "00000001 02:00:00:00:00:01       eth0\n");
  EXPECT_FALSE(read().isOverModem);
}

TEST_F(LinkTraitsTest, TellALineThatAModemCarries) {
  file("type", "65534\n");
  directory("lower_wwp0s20");
  EXPECT_FALSE(read().isOverModem);
  write("class/net/wwp0s20/uevent", "DEVTYPE=wwan\nINTERFACE=wwp0s20\n");
  EXPECT_TRUE(read().isOverModem);
  write("class/net/wwp0s20/uevent", "INTERFACE=wwp0s20\n");
  EXPECT_FALSE(read().isOverModem);
}

TEST_F(LinkTraitsTest, AreReadFromSysfs) {
  file("type", "1\n");
  file("uevent", "DEVTYPE=wlan\nINTERFACE=link0\nIFINDEX=3\n");
  directory("phy80211");
  const LinkTraits traits = read();
  EXPECT_EQ(traits.name, "link0");
  EXPECT_EQ(traits.hardwareType, ARPHRD_ETHER);
  EXPECT_EQ(traits.deviceType, "wlan");
  EXPECT_TRUE(traits.isWireless);
  EXPECT_FALSE(traits.isTun);
}

TEST_F(LinkTraitsTest, TellATunnelAndAnOlderWirelessDriver) {
  file("tun_flags", "0x1001\n");
  EXPECT_TRUE(read().isTun);
  directory("wireless");
  EXPECT_TRUE(read().isWireless);
}

TEST_F(LinkTraitsTest, AreUnknownWithoutSysfsAndWhereItHoldsNonsense) {
  EXPECT_EQ(read().hardwareType, -1);
  EXPECT_EQ(linkKind(read()), LinkKind::other);
  directory("type");
  file("uevent", "\0\xFF DEVTYPE=wlan\nXDEVTYPE=wlan\nDEVTYPE"sv);
  EXPECT_EQ(read().hardwareType, -1);
  EXPECT_EQ(read().deviceType, "");
  std::filesystem::remove(sysfs / "class/net/link0/type");
  file("type", "99999999999999999999\n");
  EXPECT_EQ(read().hardwareType, -1);
}

} // namespace
} // namespace tidewell::test
