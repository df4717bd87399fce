#include "app/ExtensionHint.h"

#include "platform/linux/bus/SessionBus.h"
#include "settings/AppSettings.h"
#include "support/FakeLoginItem.h"
#include "support/FakeMachine.h"
#include "support/FakePreferencesStore.h"
#include "support/LoopRunner.h"
#include "support/PrivateBus.h"
#include "support/TemporaryDirectory.h"
#include "support/VirtualScheduler.h"

#include <gtest/gtest.h>

#include <memory>

namespace tidewell::test {
namespace {

class ExtensionHintTest : public testing::Test {
protected:
  void SetUp() override {
    if (!daemon.isThere()) {
      GTEST_SKIP() << "dbus-daemon is not installed";
    }
    ASSERT_TRUE(runUntil(loop, [this] { return bus.connection() && shell.connection(); }));
    ASSERT_GE(sd_bus_request_name(shell.connection(), "org.gnome.Shell", 0), 0);
    std::filesystem::create_directories(std::filesystem::path(places.extension).parent_path());
    writeInPlace(places.extension, "{}");
  }

  /// Starts the program, and waits until the hint has been given or will not be.
  std::size_t noticesAfterStart() {
    center.requests.clear();
    const ExtensionHint hint(time.main(), bus, settings, center, places,
                             [this] { return isShown; });
    time.advance(ExtensionHint::patience);
    BusSlot last = callMethod(*bus.connection(), {"org.freedesktop.DBus", "/org/freedesktop/DBus"},
                              "GetId", [this](auto*) { isAnswered = true; });
    isAnswered = false;
    EXPECT_TRUE(runUntil(loop, [this] { return isAnswered; }));
    return center.requests.size();
  }

  TemporaryDirectory directory;
  ExtensionHint::Places places =
      ExtensionHint::placesFor(directory / "usr/bin/tidewell", (directory / "state").string());
  PrivateBus daemon;
  EpollLoop loop;
  SessionBus bus{loop, daemon.address()};
  SessionBus shell{loop, daemon.address()};
  VirtualScheduler time;
  FakePreferencesStore preferences{time.main()};
  FakeLoginItem loginItem;
  AppSettings settings{preferences, loginItem};
  FakeNotificationCenter center;
  bool isShown = false;
  bool isAnswered = false;
};

TEST_F(ExtensionHintTest, IsGivenOnceWithLowPriority) {
  ASSERT_EQ(noticesAfterStart(), 1U);
  EXPECT_EQ(center.requests[0].priority, NotificationPriority::low);
  EXPECT_NE(center.requests[0].body.find("gnome-extensions enable tidewell@halden.com"),
            std::string::npos);
  EXPECT_EQ(noticesAfterStart(), 0U);
}

TEST_F(ExtensionHintTest, IsNotGivenWhileTheExtensionShowsTheFigures) {
  isShown = true;
  EXPECT_EQ(noticesAfterStart(), 0U);
  isShown = false;
  EXPECT_EQ(noticesAfterStart(), 1U);
}

TEST_F(ExtensionHintTest, IsNotGivenOnOtherDesktops) {
  ASSERT_GE(sd_bus_release_name(shell.connection(), "org.gnome.Shell"), 0);
  EXPECT_EQ(noticesAfterStart(), 0U);
}

TEST_F(ExtensionHintTest, IsNotGivenWithoutTheExtension) {
  std::filesystem::remove(places.extension);
  EXPECT_EQ(noticesAfterStart(), 0U);
}

TEST_F(ExtensionHintTest, IsNotGivenWhileNoticesAreOff) {
  ASSERT_FALSE(settings.setShowNotifications(false));
  EXPECT_EQ(noticesAfterStart(), 0U);
}

TEST_F(ExtensionHintTest, IsNotGivenAtEachStartIfItCannotBeRemembered) {
  writeInPlace(directory / "state", "a file in place of the directory");
  EXPECT_EQ(noticesAfterStart(), 0U);
}

} // namespace
} // namespace tidewell::test
