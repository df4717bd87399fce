#include "app/WatcherClient.h"

#include "platform/linux/bus/BusMessages.h"
#include "platform/linux/bus/SessionBus.h"
#include "platform/linux/loop/EpollLoop.h"
#include "support/LoopRunner.h"
#include "support/PrivateBus.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace tidewell::test {
namespace {

constexpr const char* name = "org.kde.StatusNotifierWatcher";

/// A watcher that takes the name from another, and items or not.
class Watcher {
public:
  Watcher(EventLoop& loop, const std::string& address, bool takesItems)
      : m_takesItems(takesItems), m_bus(loop, address),
        m_connected(m_bus.onConnected([this](sd_bus& bus) { appear(bus); })) {}

private:
  void appear(sd_bus& bus) {
    const auto called = [](sd_bus_message* call, void* self, sd_bus_error*) {
      return static_cast<Watcher*>(self)->m_takesItems
                 ? sd_bus_reply_method_return(call, "")
                 : sd_bus_reply_method_errno(call, EACCES, nullptr);
    };
    m_object = takeFrom<BusSlot>([&](sd_bus_slot** slot) {
      return sd_bus_add_object(&bus, slot, "/StatusNotifierWatcher", called, this);
    });
    constexpr std::uint64_t flags = SD_BUS_NAME_ALLOW_REPLACEMENT | SD_BUS_NAME_REPLACE_EXISTING;
    sd_bus_request_name_async(&bus, nullptr, name, flags, nullptr, nullptr);
  }

  bool m_takesItems;
  SessionBus m_bus;
  BusSlot m_object;
  Subscription m_connected;
};

class WatcherClientTest : public testing::Test {
protected:
  void SetUp() override {
    if (!daemon.isThere()) {
      GTEST_SKIP() << "dbus-daemon is not installed";
    }
  }

  PrivateBus daemon;
  EpollLoop loop;
  SessionBus bus{loop, daemon.address()};
  std::vector<bool> told;
  WatcherClient client{
      loop, bus, {[](const std::string&) {}, [this](bool taken) { told.push_back(taken); }}};
};

TEST_F(WatcherClientTest, TheItemIsNotTakenByAWatcherThatTookAnothersPlaceAndRefuses) {
  const Watcher first(loop, daemon.address(), true);
  ASSERT_TRUE(runUntil(loop, [this] { return !told.empty() && told.back(); }));
  const Watcher second(loop, daemon.address(), false);
  EXPECT_TRUE(runUntil(loop, [this] { return !told.back(); }));
}

TEST_F(WatcherClientTest, TheItemIsTakenAgainByAWatcherThatTookAnothersPlace) {
  const Watcher first(loop, daemon.address(), true);
  ASSERT_TRUE(runUntil(loop, [this] { return !told.empty() && told.back(); }));
  told.clear();
  const Watcher second(loop, daemon.address(), true);
  ASSERT_TRUE(runUntil(loop, [this] { return told.size() == 2; }));
  EXPECT_EQ(told, (std::vector<bool>{false, true}));
}

} // namespace
} // namespace tidewell::test
