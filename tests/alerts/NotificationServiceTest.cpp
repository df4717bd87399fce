#include "alerts/NotificationService.h"

#include "platform/LoginItem.h"
#include "settings/AppSettings.h"
#include "support/FakeLoginItem.h"
#include "support/FakeMachine.h"
#include "support/FakePreferencesStore.h"
#include "support/Language.h"

#include <gtest/gtest.h>

namespace tidewell::test {
namespace {

class NotificationServiceTest : public testing::Test {
protected:
  FakeMachine machine;
  FakePreferencesStore preferences{machine.scheduler.main()};
  FakeLoginItem loginItem;
  AppSettings settings{preferences, loginItem};
  FakeNotificationCenter center;
  NotificationService service{settings, machine.clock, center};

  void pass(Seconds span) { machine.scheduler.advance(span); }
  std::vector<std::string> sent() const { return center.identifiers(); }
  void dropSpeed() { service.notifySpeedDrop(1.0, 10.0); }
};

TEST_F(NotificationServiceTest, WordsAndWeighsEveryNotice) {
  service.notifyConnectionLost();
  service.notifyConnectionRestored();
  pass(61.0);
  service.notifySpeedDrop(3.456, 10.0);
  pass(61.0);
  service.notifyHighLatency(152.6, 100.0);
  const std::vector<NotificationRequest> expected{
      {"connection-lost", "Internet Connection Lost", "No internet connectivity detected."},
      {"connection-restored", "Connection Restored", "Internet connectivity has been restored."},
      {"speed-drop", "Speed Dropped Below Threshold",
       "Download speed fell to 3.5 Mbps (threshold: 10 Mbps)", NotificationPriority::low},
      {"high-latency", "High Latency Detected", "Latency is 153 ms (threshold: 100 ms)",
       NotificationPriority::low}};
  EXPECT_EQ(center.requests, expected);
}

TEST_F(NotificationServiceTest, SharesTheQuietPeriodBetweenAllKinds) {
  dropSpeed();
  pass(59.0);
  service.notifyConnectionLost();
  service.notifyHighLatency(500.0, 100.0);
  EXPECT_EQ(sent(), std::vector<std::string>{"speed-drop"});
}

TEST_F(NotificationServiceTest, StaysQuietForExactlySixtySeconds) {
  dropSpeed();
  for (int half = 0; half < 2; ++half) {
    pass(30.0);
    dropSpeed();
    EXPECT_EQ(sent().size(), 1U);
  }
  pass(0.001);
  dropSpeed();
  EXPECT_EQ(sent().size(), 2U);
}

TEST_F(NotificationServiceTest, LetsTheRestoredNoticeBreakTheQuietAndRestartIt) {
  service.notifyConnectionLost();
  pass(10.0);
  service.notifyConnectionRestored();
  pass(40.0);
  dropSpeed();
  EXPECT_EQ(sent(), (std::vector<std::string>{"connection-lost", "connection-restored"}));
  pass(21.0);
  dropSpeed();
  EXPECT_EQ(sent().back(), "speed-drop");
}

TEST_F(NotificationServiceTest, WritesNoticesInTheUsersLanguage) {
  const Language language(TIDEWELL_CATALOGUES, "ja");
  service.notifySpeedDrop(1.25, 5.0);
  ASSERT_EQ(center.requests.size(), 1U);
  EXPECT_EQ(center.requests[0].title, "速度がしきい値を下回りました");
  EXPECT_EQ(center.requests[0].body,
            "ダウンロード速度が 1.2 Mbps に低下しました（しきい値: 5 Mbps）");
}

TEST_F(NotificationServiceTest, SendsNothingWhileSwitchedOffAndKeepsItsClock) {
  dropSpeed();
  settings.setShowNotifications(false);
  pass(50.0);
  service.notifyConnectionRestored();
  service.notifyConnectionLost();
  EXPECT_EQ(sent().size(), 1U);
  settings.setShowNotifications(true);
  dropSpeed();
  EXPECT_EQ(sent().size(), 1U) << "still within the minute of the one that was sent";
  pass(11.0);
  dropSpeed();
  EXPECT_EQ(sent().size(), 2U);
}

TEST_F(NotificationServiceTest, StaysQuietLongerWhenTheClockIsSetBack) {
  dropSpeed();
  machine.clock.jump(-3600.0);
  pass(61.0);
  dropSpeed();
  EXPECT_EQ(sent().size(), 1U);
  service.notifyConnectionRestored();
  pass(61.0);
  dropSpeed();
  EXPECT_EQ(sent().size(), 3U);
}

TEST_F(NotificationServiceTest, StartsTheQuietPeriodBeforeTheDesktopHasTheNotice) {
  center.atAdd = [this] {
    if (sent().size() == 1) {
      dropSpeed();
      machine.clock.jump(40.0);
    }
  };
  service.notifyConnectionLost();
  EXPECT_EQ(sent().size(), 1U);
  pass(21.0);
  dropSpeed();
  EXPECT_EQ(sent().size(), 2U) << "the desktop's time counts";
}

TEST_F(NotificationServiceTest, SendsNothingWithoutADesktop) {
  NotificationService alone;
  alone.notifyConnectionLost();
  alone.notifyConnectionRestored();
  service.detach();
  service.notifyConnectionLost();
  EXPECT_TRUE(sent().empty());
}

TEST(NotificationServiceShared, IsOneForTheProcess) {
  EXPECT_EQ(&NotificationService::shared(), &NotificationService::shared());
}

} // namespace
} // namespace tidewell::test
