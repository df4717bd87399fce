#include "platform/linux/bus/SessionBus.h"

#include "platform/linux/bus/BusObject.h"
#include "support/LoopRunner.h"
#include "support/PrivateBus.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/ioctl.h>

namespace tidewell::test {
namespace {

struct BusEnd {
  void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
};
using Client = std::unique_ptr<sd_bus, BusEnd>;

constexpr const char* path = "/org/example/Flooded";
constexpr const char* testInterface = "org.example.Flooded";

/// An object whose method a client calls faster than it is handled.
class SessionBusFlood : public testing::Test {
protected:
  void SetUp() override {
    if (!daemon.isThere()) {
      GTEST_SKIP() << "dbus-daemon is not installed";
    }
    object.method("Call", "", "ay", [this](auto&, sd_bus_message& reply) {
      ++handled;
      loop.post([this, at = handled] { latest = std::max(latest, handled - at); });
      const std::vector<std::uint8_t> bytes(replySize);
      return sd_bus_message_append_array(&reply, 'y', bytes.data(), bytes.size());
    });
    ASSERT_TRUE(runUntil(loop, [this] { return bus.connection() != nullptr; }));
    object.appear(*bus.connection());
    sd_bus_get_unique_name(bus.connection(), &name);
    client = takeFrom<Client>([](sd_bus** made) { return sd_bus_new(made); });
    sd_bus_set_address(client.get(), daemon.address().c_str());
    sd_bus_set_bus_client(client.get(), 1);
    ASSERT_GE(sd_bus_start(client.get()), 0);
  }

  /// Sends this many calls and returns when all are in the object's socket. Reads no reply.
  void flood(int calls) {
    for (int call = 0; call < calls; ++call) {
      const auto message = takeFrom<BusMessage>([&](sd_bus_message** made) {
        return sd_bus_message_new_method_call(client.get(), made, name, path, testInterface,
                                              "Call");
      });
      std::uint64_t cookie = 0; // passing it requests a reply
      ASSERT_GE(sd_bus_send(client.get(), message.get(), &cookie), 0);
    }
    constexpr int smallestCall = 100;
    int arrived = 0;
    for (int round = 0; round < 1'000 && arrived < calls * smallestCall; ++round) {
      ASSERT_GE(sd_bus_call_method(client.get(), busDaemon.name, busDaemon.path, busDaemon.name,
                                   "GetId", nullptr, nullptr, ""),
                0);
      ASSERT_EQ(::ioctl(sd_bus_get_fd(bus.connection()), FIONREAD, &arrived), 0);
    }
    ASSERT_GE(arrived, calls * smallestCall);
  }

  PrivateBus daemon;
  EpollLoop loop;
  SessionBus bus{loop, daemon.address()};
  BusObject object{path, testInterface};
  Client client;
  const char* name = nullptr;
  std::size_t replySize = 0;
  int handled = 0;
  int latest = 0; // the most calls handled between posting a task and running it
};

TEST_F(SessionBusFlood, DelaysOtherWorkByAFewMessages) {
  flood(100);
  EXPECT_TRUE(runUntil(loop, [this] { return handled == 100; }));
  EXPECT_GT(latest, 0) << "several messages are handled in a turn";
  EXPECT_LT(latest, SessionBus::messagesPerTurn);
}

TEST_F(SessionBusFlood, HandlesNoFurtherCallsWhileTheBusTakesNoReplies) {
  constexpr int calls = 64;
  replySize = std::size_t{1} << 20; // sockets hold at most eight of them
  flood(calls);
  daemon.halt();
  const FileDescriptor readable(::eventfd(1, EFD_CLOEXEC));
  const auto awake = loop.watch(readable.get(), EPOLLIN, [](std::uint32_t) {});
  int turns = 0;
  Subscription count = loop.beforeSleep([&] {
    if (++turns == 100) {
      loop.quit();
    }
  });
  loop.run();
  count.end();
  EXPECT_GT(handled, 0);
  EXPECT_LT(handled, calls / 2);
  client.reset();
  daemon.resume();
  EXPECT_TRUE(runUntil(loop, [&] { return handled == calls; }));
}

} // namespace
} // namespace tidewell::test
