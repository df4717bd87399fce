#include "support/Panel.h"

#include <gtest/gtest.h>

#include <QtTest/QTest>

namespace tidewell::test {
namespace {

class ActionsTest : public testing::Test, protected Panel {
protected:
  void SetUp() override { open(); }

  void activate() const {
    view->activateWindow();
    settle();
  }
  void setAddresses(const std::string& local, const std::string& publicAddress) {
    monitor.connectionInfo.mutate([&](ConnectionInfo& info) {
      info.ipAddress = local;
      info.publicIP = publicAddress;
    });
  }
};

TEST_F(ActionsTest, AsksForWhatEachButtonSays) {
  for (int index = 0; index < 5; ++index) {
    button(index).click();
  }
  EXPECT_EQ(calls.runSpeedTest, 1);
  EXPECT_EQ(calls.copied.size(), 1U);
  EXPECT_EQ(calls.openDetail, 1);
  EXPECT_EQ(calls.openSettings, 1);
  EXPECT_EQ(calls.quit, 1);
}

TEST_F(ActionsTest, StartsNoSecondSpeedTest) {
  speedTest.isRunning.set(true);
  EXPECT_TRUE(button(0).isEnabled());
  button(0).click();
  EXPECT_EQ(calls.runSpeedTest, 0);
  speedTest.isRunning.set(false);
  button(0).click();
  EXPECT_EQ(calls.runSpeedTest, 1);
}

TEST_F(ActionsTest, CopiesThePublicAddressElseTheLocalOne) {
  setAddresses("192.168.1.20", "203.0.113.77");
  button(1).click();
  setAddresses("192.168.1.20", "--");
  button(1).click();
  setAddresses("--", "--");
  button(1).click();
  setAddresses("192.168.1.20", "odd\n\xff text");
  button(1).click();
  EXPECT_EQ(calls.copied,
            (std::vector<std::string>{"203.0.113.77", "192.168.1.20", "--", "odd\n\xff text"}));
}

TEST_F(ActionsTest, SaysForOneAndAHalfSecondsThatItCopied) {
  EXPECT_EQ(button(1).text(), "Copy IP");
  EXPECT_EQ(button(1).face(), Icon::copy);
  button(1).click();
  EXPECT_TRUE(view->copiedIP());
  EXPECT_EQ(button(1).text(), "Copied!");
  EXPECT_EQ(button(1).face(), Icon::checkMark);
  time.advance(1.4);
  EXPECT_TRUE(view->copiedIP());
  time.advance(0.1);
  EXPECT_FALSE(view->copiedIP());
  EXPECT_EQ(button(1).text(), "Copy IP");
}

TEST_F(ActionsTest, LetsTheFirstResetFireAtItsOwnTime) {
  button(1).click();
  time.advance(1.0);
  button(1).click();
  EXPECT_EQ(calls.copied.size(), 2U);
  time.advance(0.5);
  EXPECT_FALSE(view->copiedIP());
  time.advance(1.0);
  EXPECT_FALSE(view->copiedIP());
}

TEST_F(ActionsTest, HasCopiedNothingWhenOpenedAgain) {
  button(1).click();
  open();
  EXPECT_FALSE(view->copiedIP());
  EXPECT_EQ(button(1).text(), "Copy IP");
  button(1).click();
  time.advance(1.0);
  EXPECT_TRUE(view->copiedIP());
}

TEST_F(ActionsTest, IsClosedWhileAResetIsStillToCome) {
  button(1).click();
  view.reset();
  time.advance(2.0);
  sampler.currentDownloadBytesPerSec.set(5); // has no observer left
  EXPECT_EQ(calls.copied.size(), 1U);
}

TEST(ViewTimeTest, CallsBackOnceWhenItIsTime) {
  const ViewTime time = ViewTime::real();
  const double began = time.now();
  int calls = 0;
  double called = 0.0;
  time.after(0.02, [&] {
    ++calls;
    called = time.now();
  });
  EXPECT_TRUE(QTest::qWaitFor([&] { return calls > 0; }));
  EXPECT_GE(called - began, 0.015);
  Panel::settle();
  EXPECT_EQ(calls, 1);
}

TEST_F(ActionsTest, PressesNothingBeforeAButtonIsChosen) {
  activate();
  QTest::keyClick(view->focusWidget() ? view->focusWidget() : view.get(), Qt::Key_Space);
  EXPECT_EQ(calls.runSpeedTest, 0);
}

TEST_F(ActionsTest, ReachesEveryButtonInOrderWithTab) {
  activate();
  for (int index = 0; index < 5; ++index) {
    QTest::keyClick(view->focusWidget() ? view->focusWidget() : view.get(), Qt::Key_Tab);
    EXPECT_EQ(view->focusWidget(), &button(index)) << index;
  }
}

TEST_F(ActionsTest, MovesBetweenButtonsWithTheArrows) {
  activate();
  button(0).setFocus();
  QTest::keyClick(&button(0), Qt::Key_Right);
  EXPECT_EQ(view->focusWidget(), &button(1));
  QTest::keyClick(&button(1), Qt::Key_Left);
  EXPECT_EQ(view->focusWidget(), &button(0));
}

TEST_F(ActionsTest, LeavesEscapeToItsWindow) {
  QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
  QCoreApplication::sendEvent(&button(2), &escape);
  EXPECT_FALSE(escape.isAccepted());
}

} // namespace
} // namespace tidewell::test
