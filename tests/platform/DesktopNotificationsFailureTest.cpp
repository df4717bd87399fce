#include "support/NotificationDesk.h"

namespace tidewell::test {
namespace {

using DesktopNotificationsFailure = NotificationDesk;

TEST_F(DesktopNotificationsFailure, LosesANoticeOfAnAbsentServerAndNothingElse) {
  server.reset();
  show("a", "unheard");
  startServer();
  settle();
  EXPECT_EQ(heard(), Heard{});
  show("a", "heard");
  EXPECT_EQ(heard(), (Heard{{"heard", 0}}));
}

TEST_F(DesktopNotificationsFailure, LosesANoticeThatIsRefusedAndSendsTheNext) {
  show("a", "first");
  server->toNotices = Manner::refuses;
  add("a", "refused");
  add("a", "waited");
  settle();
  server->toNotices = Manner::answers;
  show("a", "accepted");
  EXPECT_EQ(heard(), (Heard{{"first", 0}, {"refused", 101}, {"waited", 101}, {"accepted", 101}}));
  EXPECT_EQ(sounds, 2) << "what is not shown is not heard";
}

TEST_F(DesktopNotificationsFailure, TakesAnAnswerOfAnotherFormForARefusal) {
  server->toNotices = Manner::talksNonsense;
  show("a", "first");
  server->toNotices = Manner::answers;
  server->toQuestions = Manner::talksNonsense;
  show("a", "second");
  EXPECT_EQ(heard(), (Heard{{"first", 0}, {"second", 0}}));
  EXPECT_EQ(sounds, 0);
}

TEST_F(DesktopNotificationsFailure, AsksAgainForCapabilitiesThatWereRefused) {
  server->toQuestions = Manner::refuses;
  show("a", "first");
  EXPECT_EQ(sounds, 0);
  server->toQuestions = Manner::answers;
  show("a", "second");
  EXPECT_EQ(server->questions, 2);
  EXPECT_EQ(sounds, 1);
}

TEST_F(DesktopNotificationsFailure, SoundsANoticeOfAServerThatDoesNotSayWhetherItInhibits) {
  server->properties = {{"org.freedesktop.Notifications.Inhibited", true}};
  server->toProperties = Manner::refuses;
  show("a", "first");
  EXPECT_EQ(sounds, 1);
  server->toProperties = Manner::talksNonsense;
  show("a", "second");
  EXPECT_EQ(sounds, 2);
  server->toProperties = Manner::hangs;
  show("a", "third");
  show("a", "fourth");
  EXPECT_EQ(sounds, 2);
  EXPECT_TRUE(runUntil(loop, [&] { return sounds > 2; }));
  server->answerLate();
  settle();
  EXPECT_EQ(sounds, 3) << "one for two notices, because the answer came too late";
}

TEST_F(DesktopNotificationsFailure, AsksNoServerThatHasGoneWhetherItInhibited) {
  server->toProperties = Manner::hangs;
  show("a", "first");
  const auto old = std::move(server);
  startServer();
  old->resign();
  settle();
  old->answerLate();
  settle();
  EXPECT_EQ(sounds, 0);
  EXPECT_EQ(server->propertyQuestions, 0);
}

TEST_F(DesktopNotificationsFailure, KeepsOtherIdentifiersFromWaitingForAnAnswerThatNeverComes) {
  server->toNotices = Manner::hangs;
  show("a", "hanging");
  server->toNotices = Manner::answers;
  add("a", "waiting");
  show("b", "free");
  show("b", "free again");
  EXPECT_EQ(heard(), (Heard{{"hanging", 0}, {"free", 0}, {"free again", 101}}));
}

TEST_F(DesktopNotificationsFailure, SendsWhatWaitedAfterTheTimeOfAnAnswerThatNeverCame) {
  sd_bus_set_method_call_timeout(bus.connection(), 50'000);
  server->toNotices = Manner::hangs;
  show("a", "hanging");
  server->toNotices = Manner::answers;
  add("a", "waiting");
  EXPECT_TRUE(runUntil(loop, [&] { return server->notices.size() >= 2; }));
  EXPECT_EQ(heard(), (Heard{{"hanging", 0}, {"waiting", 0}}));
  settle();
  server->answerLate();
  show("a", "replacing");
  EXPECT_EQ(heard().back(), (Heard::value_type{"replacing", 101}))
      << "an answer after its time is nobody's";
}

TEST_F(DesktopNotificationsFailure, SendsWhatWaitedToTheNextServer) {
  show("a", "first");
  server->toNotices = Manner::hangs;
  show("a", "hanging");
  add("a", "waiting");
  // The new server queues for the name before the old one leaves, so there always is one.
  auto old = std::move(server);
  startServer();
  old.reset();
  EXPECT_TRUE(runUntil(loop, [&] { return !server->notices.empty(); }));
  EXPECT_EQ(heard(), (Heard{{"waiting", 0}}));
}

TEST_F(DesktopNotificationsFailure, AsksTheNextServerWhileTheLastStillOwesItsCapabilities) {
  server->toQuestions = Manner::hangs;
  show("a", "first");
  const auto old = std::move(server);
  startServer({"sound"});
  old->resign();
  settle();
  show("a", "second");
  old->answerLate();
  settle();
  EXPECT_EQ(heard(), (Heard{{"second", 0}}));
  EXPECT_EQ(server->questions, 1);
  EXPECT_EQ(sounds, 0);
}

TEST_F(DesktopNotificationsFailure, TakesNoNumberFromAServerThatIsNoLongerTheOne) {
  server->toNotices = Manner::hangs;
  show("a", "first");
  const auto old = std::move(server);
  startServer();
  old->resign();
  settle();
  old->answerLate();
  settle();
  show("a", "second");
  EXPECT_EQ(heard(), (Heard{{"second", 0}}));
}

TEST_F(DesktopNotificationsFailure, KeepsWhatWaitsWhenTheBusGoes) {
  server->toNotices = Manner::hangs;
  show("a", "lost with the bus");
  add("a", "waiting");
  daemon.end();
  EXPECT_TRUE(runUntil(loop, [&] { return bus.connection() == nullptr; }));
  add("b", "asked for without a bus");
  daemon.start();
  startServer();
  EXPECT_TRUE(runUntil(loop, [&] { return server->notices.size() >= 2; }));
  EXPECT_EQ(heard(), (Heard{{"waiting", 0}, {"asked for without a bus", 0}}));
}

TEST_F(DesktopNotificationsFailure, DropsWhatHasWaitedForMoreThanAMinuteForAnAnswer) {
  server->toNotices = Manner::hangs;
  show("a", "hanging");
  add("a", "old by then");
  clock.time += 60.5;
  server->toNotices = Manner::answers;
  server->answerLate();
  settle();
  show("a", "new");
  EXPECT_EQ(heard(), (Heard{{"hanging", 0}, {"new", 101}}));
}

TEST_F(DesktopNotificationsFailure, EndsWithCallsUnderWay) {
  server->toNotices = Manner::hangs;
  server->toQuestions = Manner::hangs;
  show("a", "hanging");
  add("a", "waiting");
  server->toNotices = Manner::answers;
  show("b", "shown");
  EXPECT_EQ(server->questions, 1);
  center.reset();
  server->answerLate();
  settle();
  EXPECT_EQ(sounds, 0);
}

} // namespace
} // namespace tidewell::test
