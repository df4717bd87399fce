#pragma once

#include "base/Clock.h"
#include "platform/linux/bus/DesktopNotifications.h"
#include "support/FakeNotificationServer.h"
#include "support/LoopRunner.h"
#include "support/PrivateBus.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tidewell::test {

class ManualClock final : public Clock {
public:
  [[nodiscard]] double now() const override { return time; }
  double time = 1'700'000'000.0;
};

/// Notices on a private bus, with a fake server.
class NotificationDesk : public testing::Test {
protected:
  using Manner = FakeNotificationServer::Manner;

  void SetUp() override {
    if (!daemon.isThere()) {
      GTEST_SKIP() << "dbus-daemon is not installed";
    }
    startServer();
    ASSERT_TRUE(runUntil(loop, [&] { return bus.connection() != nullptr; }));
    settle();
  }

  void startServer(std::vector<std::string> capabilities = {"body"}) {
    server =
        std::make_unique<FakeNotificationServer>(loop, daemon.address(), std::move(capabilities));
    ASSERT_TRUE(runUntil(loop, [&] { return server->isThere(); }));
  }

  /// Replaces the running server with another.
  void replaceServer(std::vector<std::string> capabilities = {"body"}) {
    server.reset();
    startServer(std::move(capabilities));
    settle();
  }

  /// Runs until the server has received everything, every answer has arrived, and so on for what
  /// the answers cause.
  void settle() {
    for (int round = 0; round < 5; ++round) {
      askServer();
    }
  }

  void add(const std::string& identifier, const std::string& title) {
    center->add({identifier, title, "What there is to say."});
  }
  void show(const std::string& identifier, const std::string& title) {
    add(identifier, title);
    settle();
  }

  /// The notices received by the server: title, and number of the one replaced.
  using Heard = std::vector<std::pair<std::string, std::uint32_t>>;
  [[nodiscard]] Heard heard() const {
    Heard result;
    for (const ReceivedNotice& notice : server->notices) {
      result.emplace_back(notice.title, notice.replaces);
    }
    return result;
  }

private:
  void askServer() {
    bool isAnswered = false;
    const auto answered = [](sd_bus_message*, void* flag, sd_bus_error*) {
      *static_cast<bool*>(flag) = true;
      return 0;
    };
    const auto call = takeFrom<BusSlot>([&](sd_bus_slot** slot) {
      return sd_bus_call_method_async(bus.connection(), slot, "org.freedesktop.Notifications",
                                      "/org/freedesktop/Notifications", "org.freedesktop.DBus.Peer",
                                      "Ping", answered, &isAnswered, nullptr);
    });
    ASSERT_NE(call, nullptr);
    ASSERT_TRUE(runUntil(loop, [&] { return isAnswered; }));
  }

protected:
  PrivateBus daemon;
  EpollLoop loop;
  ManualClock clock;
  int sounds = 0;
  std::unique_ptr<FakeNotificationServer> server;
  SessionBus bus{loop, daemon.address()};
  std::unique_ptr<DesktopNotifications> center =
      std::make_unique<DesktopNotifications>(bus, clock, [this] { ++sounds; });
};

} // namespace tidewell::test
