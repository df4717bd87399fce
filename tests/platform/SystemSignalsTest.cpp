#include "platform/linux/bus/SystemSignals.h"

#include "platform/linux/bus/SessionBus.h"
#include "support/FakeResolved.h"
#include "support/LoopRunner.h"

#include <gtest/gtest.h>

#include <vector>

namespace tidewell::test {
namespace {

/// A program of the system that owns a name and sends signals.
class Announcer {
public:
  explicit Announcer(const char* name) {
    sd_bus_open_system(&m_bus);
    EXPECT_GE(sd_bus_request_name(m_bus, name, 0), 0);
  }
  Announcer(Announcer&&) = delete;
  ~Announcer() { sd_bus_flush_close_unref(m_bus); }

  void sleeps(bool isSleeping) {
    EXPECT_GE(sd_bus_emit_signal(m_bus, "/org/freedesktop/login1", "org.freedesktop.login1.Manager",
                                 "PrepareForSleep", "b", static_cast<int>(isSleeping)),
              0);
    sd_bus_flush(m_bus);
  }
  void changes(const char* property) {
    EXPECT_GE(sd_bus_emit_signal(m_bus, "/net/connman/service/wifi", "net.connman.Service",
                                 "PropertyChanged", "sv", property, "s", "any"),
              0);
    sd_bus_flush(m_bus);
  }

private:
  sd_bus* m_bus = nullptr;
};

class SystemSignalsTest : public testing::Test {
protected:
  void SetUp() override {
    if (!bus.isThere()) {
      GTEST_SKIP() << "dbus-daemon is not installed";
    }
    connect();
  }
  void connect() {
    EXPECT_TRUE(runUntil(loop, [&] { return connection.connection() != nullptr; }));
    serve(); // until the daemon knows the match rules
  }
  void serve() {
    loop.postAfter(0.1, [this] { loop.quit(); });
    loop.run();
  }

  PrivateSystemBus bus;
  EpollLoop loop;
  SessionBus connection{loop, SessionBus::systemAddress()};
  std::vector<bool> sleeps;
  int dnsChanges = 0;
  SystemSignals signals{
      connection,
      {[this](bool isSleeping) { sleeps.push_back(isSleeping); }, [this] { ++dnsChanges; }}};
};

TEST_F(SystemSignalsTest, TellSleepAndWaking) {
  Announcer manager("org.freedesktop.login1");
  manager.sleeps(true);
  manager.sleeps(false);
  EXPECT_TRUE(runUntil(loop, [&] { return sleeps.size() == 2; }));
  EXPECT_EQ(sleeps, (std::vector{true, false}));
}

TEST_F(SystemSignalsTest, TellThatConnmansServersChanged) {
  Announcer connman("net.connman");
  connman.changes("Strength");
  connman.changes("Nameservers");
  EXPECT_TRUE(runUntil(loop, [&] { return dnsChanges > 0; }));
  serve();
  EXPECT_EQ(dnsChanges, 1);
}

TEST_F(SystemSignalsTest, AreNotBelievedFromAnybodyElse) {
  Announcer stranger("org.example.Stranger");
  stranger.sleeps(true);
  stranger.changes("Nameservers");
  serve();
  EXPECT_TRUE(sleeps.empty());
  EXPECT_EQ(dnsChanges, 0);
}

TEST_F(SystemSignalsTest, AreHeardAgainAfterTheBusWasRestarted) {
  bus.end();
  EXPECT_TRUE(runUntil(loop, [&] { return connection.connection() == nullptr; }));
  bus.start();
  connect();
  Announcer manager("org.freedesktop.login1");
  manager.sleeps(true);
  EXPECT_TRUE(runUntil(loop, [&] { return !sleeps.empty(); }));
}

} // namespace
} // namespace tidewell::test
