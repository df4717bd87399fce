#include "support/NotificationDesk.h"

namespace tidewell::test {
namespace {

using DesktopNotificationsTest = NotificationDesk;

TEST_F(DesktopNotificationsTest, SendTextAndHints) {
  center->add({"speed-drop", "Speed Dropped", "3.5 Mbps <&> ↓"});
  settle();
  ASSERT_EQ(server->notices.size(), 1U);
  const ReceivedNotice& notice = server->notices[0];
  EXPECT_EQ(notice.application, "Tidewell");
  EXPECT_EQ(notice.replaces, 0U);
  EXPECT_EQ(notice.icon, "com.halden.Tidewell");
  EXPECT_EQ(notice.title, "Speed Dropped");
  EXPECT_EQ(notice.body, "3.5 Mbps <&> ↓");
  EXPECT_EQ(notice.hints,
            (std::map<std::string, std::string>{{"desktop-entry", "com.halden.Tidewell"},
                                                {"sound-name", "message-new-instant"},
                                                {"urgency", "byte 1"}}));
  EXPECT_EQ(notice.expiry, -1) << "how long it shows is the server's business";
}

TEST_F(DesktopNotificationsTest, ThatMatterLittleAreSaidToBeOfLowUrgencyAndTransient) {
  center->add({"speed-drop", "Speed Dropped", "", NotificationPriority::low});
  settle();
  ASSERT_EQ(server->notices.size(), 1U);
  EXPECT_EQ(server->notices[0].hints,
            (std::map<std::string, std::string>{{"desktop-entry", "com.halden.Tidewell"},
                                                {"sound-name", "message-new-instant"},
                                                {"transient", "boolean true"},
                                                {"urgency", "byte 0"}}));
}

TEST_F(DesktopNotificationsTest, ReplaceTheLastOneOfTheirIdentifierAlone) {
  show("a", "first a");
  show("b", "first b");
  show("a", "second a");
  show("b", "second b");
  EXPECT_EQ(heard(), (Heard{{"first a", 0}, {"first b", 0}, {"second a", 101}, {"second b", 102}}));
}

TEST_F(DesktopNotificationsTest, GoByTheNumberThatTheServerGaveLast) {
  show("a", "first");
  server->lastId = 500;
  show("a", "second");
  show("a", "third");
  EXPECT_EQ(heard(), (Heard{{"first", 0}, {"second", 101}, {"third", 501}}));
}

TEST_F(DesktopNotificationsTest, WaitWhileTheLastOneIsOnItsWayAndReplaceIt) {
  server->toNotices = Manner::hangs;
  add("a", "first");
  add("a", "second");
  show("a", "third");
  EXPECT_EQ(heard(), (Heard{{"first", 0}}));
  server->toNotices = Manner::answers;
  server->answerLate();
  settle();
  EXPECT_EQ(heard(), (Heard{{"first", 0}, {"third", 101}})) << "of those that wait the last counts";
}

TEST_F(DesktopNotificationsTest, ReplaceNothingOfAnotherServer) {
  show("a", "first");
  replaceServer();
  show("a", "second");
  show("a", "third");
  EXPECT_EQ(heard(), (Heard{{"second", 0}, {"third", 101}}));
}

TEST_F(DesktopNotificationsTest, AreSoundedWhereTheServerPlaysNoSound) {
  show("a", "first");
  EXPECT_EQ(sounds, 1);
  show("a", "second");
  show("b", "third");
  EXPECT_EQ(sounds, 3);
}

TEST_F(DesktopNotificationsTest, AreShownButNotSoundedWhileTheServerInhibits) {
  for (const char* quiet :
       {"org.freedesktop.Notifications.Inhibited", "org.dunstproject.cmd0.paused"}) {
    const int before = sounds;
    server->notices.clear();
    server->properties = {{quiet, true}};
    show("a", "first");
    show("b", "second");
    EXPECT_EQ(server->notices.size(), 2U);
    EXPECT_EQ(sounds, before) << quiet;
    server->properties = {{quiet, false}};
    show("a", "third");
    EXPECT_EQ(sounds, before + 1) << quiet;
  }
}

TEST_F(DesktopNotificationsTest, AreLeftToAServerThatPlaysSounds) {
  replaceServer({"body", "sound", "actions"});
  show("a", "first");
  show("a", "second");
  EXPECT_EQ(server->questions, 1);
  EXPECT_EQ(server->propertyQuestions, 0);
  EXPECT_EQ(sounds, 0);
}

TEST_F(DesktopNotificationsTest, AskEachServerOnceForItsCapabilitiesAndNotBeforeTheFirst) {
  settle();
  EXPECT_EQ(server->questions, 0);
  add("a", "first");
  add("b", "second");
  settle();
  show("a", "third");
  EXPECT_EQ(server->questions, 1);
  const int before = sounds;
  replaceServer({"sound"});
  EXPECT_EQ(server->questions, 0);
  show("a", "fourth");
  show("a", "fifth");
  EXPECT_EQ(server->questions, 1);
  EXPECT_EQ(sounds, before);
}

TEST_F(DesktopNotificationsTest, AskedForWithoutABusAreSentWhenThereIsOne) {
  SessionBus later(loop, daemon.address());
  DesktopNotifications notices(later, clock, [] {});
  notices.add({"a", "replaced while it waited", ""});
  notices.add({"a", "waited", ""});
  clock.time += 60.0;
  EXPECT_TRUE(runUntil(loop, [&] { return later.connection() != nullptr; }));
  EXPECT_TRUE(runUntil(loop, [&] { return !server->notices.empty(); }));
  EXPECT_EQ(heard(), (Heard{{"waited", 0}}));
}

TEST_F(DesktopNotificationsTest, OlderThanAMinuteWhenTheBusComesAreDropped) {
  SessionBus later(loop, daemon.address());
  DesktopNotifications notices(later, clock, [] {});
  notices.add({"a", "old", ""});
  clock.time += 0.5;
  notices.add({"b", "fresh", ""});
  clock.time += 60.0;
  EXPECT_TRUE(runUntil(loop, [&] { return later.connection() != nullptr; }));
  EXPECT_TRUE(runUntil(loop, [&] { return !server->notices.empty(); }));
  notices.add({"a", "new", ""});
  EXPECT_TRUE(runUntil(loop, [&] { return server->notices.size() >= 2; }));
  EXPECT_EQ(heard(), (Heard{{"fresh", 0}, {"new", 0}}));
}

} // namespace
} // namespace tidewell::test
