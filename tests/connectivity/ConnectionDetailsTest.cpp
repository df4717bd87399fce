#include "connectivity/ConnectionDetails.h"

#include "support/Awaiting.h"
#include "support/FakeMachine.h"

#include <gtest/gtest.h>

namespace tidewell::test {
namespace {

using InterfaceType = ConnectionInfo::InterfaceType;

class ConnectionDetailsTest : public testing::Test {
protected:
  FakeMachine machine;
  ConnectionDetails details{machine.platform};

  ConnectionInfo fetch(InterfaceType type) {
    return awaited(details.fetchConnectionInfo(type), [this] { machine.scheduler.advance(60.0); });
  }
};

TEST_F(ConnectionDetailsTest, DescribeAWiredLinkWithoutAskingForAWifiName) {
  machine.configuration.primary = "en7";
  machine.configuration.wifiName = "Harbour";
  const ConnectionInfo info = fetch(InterfaceType::ethernet);
  EXPECT_EQ(info.networkName, "Ethernet");
  EXPECT_EQ(info.interfaceName, "Ethernet (en7)");
  EXPECT_EQ(info.interfaceType, InterfaceType::ethernet);
  EXPECT_EQ(info.signalStrength, std::nullopt);
  EXPECT_EQ(machine.configuration.wifiLookups, 0);
}

TEST_F(ConnectionDetailsTest, ShowADeviceWhoseNameIsNoTextAsFarAsItIs) {
  machine.configuration.primary = "e\xFF\x1B[1m";
  machine.addresses.interfaces["e\xFF\x1B[1m"] = "192.0.2.7";
  const ConnectionInfo info = fetch(InterfaceType::ethernet);
  EXPECT_EQ(info.interfaceName, "Ethernet (e\uFFFD\uFFFD[1m)");
  EXPECT_EQ(info.ipAddress, "192.0.2.7") << "asked for by the name as it is";
}

TEST_F(ConnectionDetailsTest, NameEveryOtherLinkByItsWifiNetworkOrByItsKind) {
  EXPECT_EQ(fetch(InterfaceType::wifi).networkName, "Wi-Fi");
  EXPECT_EQ(fetch(InterfaceType::cellular).networkName, "Unknown");
  EXPECT_EQ(fetch(InterfaceType::other).networkName, "Unknown");
  for (const auto type : {InterfaceType::wifi, InterfaceType::cellular, InterfaceType::other}) {
    for (const char* name : {"Harbour", ""}) {
      machine.configuration.wifiName = name;
      EXPECT_EQ(fetch(type).networkName, name);
    }
  }
}

TEST_F(ConnectionDetailsTest, NameTheFallbackDeviceWithoutARoute) {
  machine.configuration.primary = std::nullopt;
  EXPECT_EQ(fetch(InterfaceType::other).interfaceName, "Other (en0)");
}

TEST_F(ConnectionDetailsTest, GiveTheAddressOfThePrimaryInterfaceOrDashes) {
  EXPECT_EQ(fetch(InterfaceType::ethernet).ipAddress, "--") << "only IPv6, or none";
  machine.addresses.interfaces = {{"eth0", "192.168.1.23"}, {"eth1", "10.0.0.1"}};
  EXPECT_EQ(fetch(InterfaceType::ethernet).ipAddress, "192.168.1.23");
}

TEST_F(ConnectionDetailsTest, AskTheEchoEndpointOnceAndTrimItsReply) {
  machine.http.body = " \t\v\f\r\n203.0.113.7\f\v\t \r\n";
  EXPECT_EQ(fetch(InterfaceType::ethernet).publicIP, "203.0.113.7");
  EXPECT_EQ(machine.http.requests, std::vector<std::string>{"https://api.ipify.org"});
  for (const char* empty : {"\n", ""}) {
    machine.http.body = empty;
    EXPECT_EQ(fetch(InterfaceType::ethernet).publicIP, "");
  }
}

TEST_F(ConnectionDetailsTest, KeepOutOfTheReplyWhatWouldDisguiseIt) {
  machine.http.body = "203.0.113.7\n\x1B[2J\u202E7.311\u2069";
  EXPECT_EQ(fetch(InterfaceType::ethernet).publicIP, "203.0.113.7\uFFFD\uFFFD[2J\uFFFD7.311\uFFFD");
}

TEST_F(ConnectionDetailsTest, ShowDashesWithoutAReplyOrWithoutText) {
  for (const auto& body : {std::optional<std::string>(), std::optional<std::string>("\xFF\xFE")}) {
    machine.http.body = body;
    EXPECT_EQ(fetch(InterfaceType::ethernet).publicIP, "--");
  }
}

TEST_F(ConnectionDetailsTest, AskForTheDnsServerAfterThePublicAddress) {
  machine.http.takes = 2.0;
  (void)awaited(details.fetchConnectionInfo(InterfaceType::ethernet), [this] {
    EXPECT_EQ(machine.http.requests.size(), 1U);
    EXPECT_EQ(machine.configuration.dnsLookups, 0);
    machine.scheduler.advance(2.0);
  });
  EXPECT_EQ(machine.configuration.dnsLookups, 1);
}

TEST_F(ConnectionDetailsTest, WaitThreeSecondsForAReply) {
  machine.http.takes = 3.0;
  EXPECT_EQ(fetch(InterfaceType::ethernet).publicIP, "203.0.113.7");
  machine.http.takes = 3.001;
  EXPECT_EQ(fetch(InterfaceType::ethernet).publicIP, "--");
}

TEST_F(ConnectionDetailsTest, NameTheFirstDnsServer) {
  EXPECT_EQ(fetch(InterfaceType::ethernet).dns, "--");
  machine.configuration.servers.emplace();
  EXPECT_EQ(fetch(InterfaceType::ethernet).dns, "--");
  machine.configuration.servers = {"192.168.1.1", "192.0.2.53"};
  EXPECT_EQ(fetch(InterfaceType::ethernet).dns, "192.168.1.1");
}

TEST(ConnectionInfoTest, StartsWithKnownTexts) {
  const ConnectionInfo info;
  EXPECT_EQ(info.networkName, "Unknown");
  EXPECT_EQ(info.interfaceName, "en0");
  EXPECT_EQ(info.interfaceType, InterfaceType::wifi);
  EXPECT_EQ(info.ipAddress, "--");
  EXPECT_EQ(info.publicIP, "--");
  EXPECT_EQ(info.dns, "--");
  EXPECT_EQ(info.signalStrength, std::nullopt);
}

TEST(ConnectionInfoTest, NamesTheKindsOfLinks) {
  for (const auto& [type, name] :
       {std::pair(InterfaceType::wifi, "Wi-Fi"), std::pair(InterfaceType::ethernet, "Ethernet"),
        std::pair(InterfaceType::cellular, "Cellular"), std::pair(InterfaceType::other, "Other")}) {
    EXPECT_EQ(rawValue(type), name);
    EXPECT_EQ(interfaceType(name), type);
  }
  EXPECT_EQ(interfaceType("wi-fi"), std::nullopt);
}

} // namespace
} // namespace tidewell::test
