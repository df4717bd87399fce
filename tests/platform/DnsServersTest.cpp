#include "platform/linux/network/DnsServers.h"

#include "platform/linux/bus/ResolvedServers.h"
#include "platform/linux/bus/SessionBus.h"
#include "support/Damage.h"
#include "support/DnsFiles.h"
#include "support/FakeResolved.h"
#include "support/LoopRunner.h"

#include <gtest/gtest.h>

#include <chrono>

#include <sys/socket.h>

namespace tidewell::test {
namespace {

using namespace std::string_view_literals;
using Servers = std::vector<std::string>;
using Found = std::optional<Servers>;

TEST(ResolverFile, NamesItsServersInOrder) {
  EXPECT_EQ(parseResolverFile("# made by hand\nsearch example.org\nnameserver 192.168.1.1\n"
                              "nameserver\t2001:db8::53  # second\noptions edns0\n"
                              "nameserver fe80::1%wlan0"),
            (Servers{"192.168.1.1", "2001:db8::53", "fe80::1%wlan0"}));
}

TEST(ResolverFile, LeavesOutWhatIsNoServer) {
  for (const auto text :
       {""sv, "nameserver"sv, "nameserver \n"sv, "nameserver192.168.1.1"sv, ";nameserver 1.1.1.1"sv,
        "  nameserver 1.1.1.1"sv, "nameserver example.org"sv, "nameserver 1.1.1"sv,
        "nameserver 1.1.1.1.1"sv, "nameserver <b>1.1.1.1</b>"sv, "nameserver fe80::1%\x1B[31m"sv,
        "Nameserver 1.1.1.1"sv, "\0nameserver 1.1.1.1"sv}) {
    EXPECT_EQ(parseResolverFile(text), Servers{}) << text;
  }
  EXPECT_EQ(parseResolverFile("nameserver fe80::1%" + std::string(1000, 'x')), Servers{});
  EXPECT_EQ(parseResolverFile("nameserver \xFF\nnameserver 9.9.9.9\r\n"), Servers{"9.9.9.9"});
}

TEST(ResolverFile, SurvivesRandomDamage) {
  const std::string whole = "nameserver 192.168.1.1\nnameserver fe80::1%wlan0\n";
  const auto read = [](const std::string& text) { return parseResolverFile(text).size(); };
  EXPECT_GT(readDamaged(whole, 4, read), 0U);
}

TEST(DnsChoice, TakesTheFirstListThatHoldsAServer) {
  DnsChoice choice;
  EXPECT_FALSE(choice.offer({}));
  EXPECT_EQ(choice.servers(), std::nullopt);
  EXPECT_TRUE(choice.offer({"192.168.1.1", "192.0.2.53"}));
  EXPECT_TRUE(choice.offer({"9.9.9.9"}));
  EXPECT_EQ(choice.servers(), (Found{{"192.168.1.1", "192.0.2.53"}}));
}

TEST(DnsChoice, TakesAProxyOnThisMachineOnlyWhenNothingElseIsKnown) {
  DnsChoice choice;
  EXPECT_FALSE(choice.offer({"127.0.0.53"}));
  EXPECT_EQ(choice.servers(), (Found{{"127.0.0.53"}}));
  EXPECT_TRUE(choice.offer({"127.0.0.54", "192.168.1.1"}));
  EXPECT_EQ(choice.servers(), (Found{{"192.168.1.1"}}));
  for (const auto* const proxy : {"127.0.0.1", "::1"}) {
    DnsChoice own;
    EXPECT_FALSE(own.offer({proxy}));
    EXPECT_EQ(own.servers(), (Found{{proxy}}));
    EXPECT_TRUE(own.offer({"192.168.1.1"}));
    EXPECT_EQ(own.servers(), (Found{{"192.168.1.1"}}));
  }
}

TEST(ResolvedServers, ComeInOrderOfChoice) {
  const std::vector<ResolvedServer> servers{
      {7, "192.0.2.7"}, {0, "9.9.9.9"}, {3, "192.168.1.1"}, {3, "192.168.1.2"}};
  EXPECT_EQ(inOrderOfChoice(servers, 3),
            (Servers{"192.168.1.1", "192.168.1.2", "9.9.9.9", "192.0.2.7"}));
  EXPECT_EQ(inOrderOfChoice(servers, std::nullopt),
            (Servers{"9.9.9.9", "192.0.2.7", "192.168.1.1", "192.168.1.2"}));
}

class DnsOnThisMachine : public testing::Test {
protected:
  EpollLoop loop;
  DnsFiles files;
  const DnsPlaces& places = files.places;

  Found find(std::optional<int> primaryIndex = std::nullopt) {
    SessionBus bus(loop, SessionBus::systemAddress());
    return awaited(loop, findDnsServers(loop, bus, places, primaryIndex));
  }
  void addResolved() const { std::filesystem::create_directory(places.resolvedDirectory); }
};

TEST_F(DnsOnThisMachine, AreThoseOfResolvConfWithoutResolved) {
  EXPECT_EQ(find(), std::nullopt);
  writeInPlace(places.resolverFile, "nameserver 192.168.1.1\n");
  EXPECT_EQ(find(), (Found{{"192.168.1.1"}}));
}

TEST_F(DnsOnThisMachine, AreThoseOfResolvedsFileWithoutABus) {
  ::setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/bus", 1);
  addResolved();
  writeInPlace(places.resolverFile, "nameserver 127.0.0.53\n");
  EXPECT_EQ(find(), (Found{{"127.0.0.53"}}));
  writeInPlace(places.resolvedDirectory + "/resolv.conf", "nameserver 192.168.1.1\n");
  EXPECT_EQ(find(), (Found{{"192.168.1.1"}}));
  ::unsetenv("DBUS_SYSTEM_BUS_ADDRESS");
}

TEST_F(DnsOnThisMachine, AreThoseBehindNetworkManagersProxy) {
  writeInPlace(places.resolverFile, "nameserver 127.0.0.1\n");
  std::filesystem::create_directory(places.networkManagerDirectory);
  const std::string manager = places.networkManagerDirectory + "/resolv.conf";
  writeInPlace(places.networkManagerDirectory + "/no-stub-resolv.conf", "nameserver 192.168.1.1\n");
  EXPECT_EQ(find(), (Found{{"127.0.0.1"}})) << "the proxy need not be NetworkManager's";
  writeInPlace(manager, "nameserver 192.168.1.1\n");
  EXPECT_EQ(find(), (Found{{"127.0.0.1"}}));
  writeInPlace(manager, "nameserver 127.0.0.1\noptions edns0 trust-ad\n");
  EXPECT_EQ(find(), (Found{{"192.168.1.1"}}));
}

TEST_F(DnsOnThisMachine, AreThoseThatResolvconfLeavesForDnsmasq) {
  writeInPlace(places.dnsmasqFile, "nameserver 192.168.1.1\n");
  EXPECT_EQ(find(), (Found{{"192.168.1.1"}}));
  writeInPlace(places.resolverFile, "nameserver 127.0.0.1\n");
  EXPECT_EQ(find(), (Found{{"192.168.1.1"}}));
  writeInPlace(places.resolverFile, "nameserver 9.9.9.9\n");
  EXPECT_EQ(find(), (Found{{"9.9.9.9"}}));
}

TEST_F(DnsOnThisMachine, DoNotComeFromAFileTooLargeToBeOne) {
  writeInPlace(places.resolverFile, "nameserver 192.168.1.1\n" + std::string(1 << 20, '#'));
  EXPECT_EQ(find(), std::nullopt);
}

class DnsOverTheBus : public DnsOnThisMachine {
protected:
  void SetUp() override {
    if (!bus.isThere()) {
      GTEST_SKIP() << "dbus-daemon is not installed";
    }
    addResolved();
    writeInPlace(places.resolverFile, "nameserver 198.51.100.9\n");
  }
  static int appendServer(sd_bus_message* reply, int index, int family, std::string_view address) {
    sd_bus_message_open_container(reply, 'r', "iiay");
    sd_bus_message_append(reply, "ii", index, family);
    sd_bus_message_append_array(reply, 'y', address.data(), address.size());
    return sd_bus_message_close_container(reply);
  }

  PrivateSystemBus bus;
};

TEST_F(DnsOverTheBus, AreThoseOfTheLinkThatCarriesTheTraffic) {
  const FakeResolved resolved("a(iiay)", [](sd_bus_message* reply) {
    sd_bus_message_open_container(reply, 'a', "(iiay)");
    appendServer(reply, 0, AF_INET, "\x09\x09\x09\x09");
    appendServer(reply, 2, AF_INET, "\xC0\xA8\x01");
    appendServer(reply, 2, 99, "\xC0\xA8\x01\x01");
    appendServer(reply, 2, AF_INET6, " \x01\x0D\xB8\0\0\0\0\0\0\0\0\0\0\0S"sv);
    appendServer(reply, 3, AF_INET, "\xC0\xA8\x01\x01");
    return sd_bus_message_close_container(reply);
  });
  EXPECT_EQ(find(2), (Found{{"2001:db8::53", "9.9.9.9", "192.168.1.1"}}));
  EXPECT_EQ(find(3), (Found{{"192.168.1.1", "9.9.9.9", "2001:db8::53"}}));
}

TEST_F(DnsOverTheBus, DoNotComeFromAReplyOfAnotherForm) {
  {
    const FakeResolved resolved(
        "s", [](sd_bus_message* reply) { return sd_bus_message_append(reply, "s", "9.9.9.9"); });
    EXPECT_EQ(find(2), (Found{{"198.51.100.9"}}));
  }
  const FakeResolved resolved("a(iay)", [](sd_bus_message* reply) {
    return sd_bus_message_append(reply, "a(iay)", 1, 2, 2, 9, 9);
  });
  EXPECT_EQ(find(2), (Found{{"198.51.100.9"}}));
}

TEST_F(DnsOverTheBus, AreThoseBehindConnmansProxy) {
  std::filesystem::remove(places.resolvedDirectory);
  std::filesystem::create_directory(places.connmanDirectory);
  writeInPlace(places.resolverFile, "nameserver ::1\nnameserver 127.0.0.1\n");
  EXPECT_EQ(find(), (Found{{"::1", "127.0.0.1"}})) << "it does not run";
  const FakeConnman connman;
  EXPECT_EQ(find(), (Found{{"192.168.1.1", "fd00::53"}}));
}

TEST_F(DnsOverTheBus, ComeFromTheFileWhenResolvedDoesNotRun) {
  EXPECT_EQ(find(2), (Found{{"198.51.100.9"}}));
}

TEST_F(DnsOverTheBus, DoNotWaitForABusThatHangs) {
  bus.halt();
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(find(2), (Found{{"198.51.100.9"}}));
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(1));
}

} // namespace
} // namespace tidewell::test
