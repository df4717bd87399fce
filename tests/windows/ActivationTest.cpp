#include "ui/application/PanelController.h"
#include "ui/application/SingleWindow.h"

#include "ui/mirror/ResidentMirror.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>

namespace tidewell::test {
namespace {

class PanelActivation : public testing::Test {
protected:
  ResidentState state;
  PanelController panel{state, PanelActions{[] {}, [] {}, [] {}, [] {}, [](const auto&) {}}};
  QSignalSpy opened{&panel, &PanelController::opened};
  QSignalSpy closed{&panel, &PanelController::closed};
};

TEST_F(PanelActivation, TogglesThePanel) {
  panel.toggle(QPoint(700, 10));
  EXPECT_TRUE(panel.isOpen());
  panel.toggle(QPoint(700, 10));
  EXPECT_FALSE(panel.isOpen());
  panel.toggle(std::nullopt);
  EXPECT_TRUE(panel.isOpen());
  EXPECT_EQ(opened.count(), 2);
  EXPECT_EQ(closed.count(), 1);
}

TEST_F(PanelActivation, OpensAnOpenPanelOnce) {
  panel.open(std::nullopt);
  panel.open(std::nullopt);
  EXPECT_EQ(opened.count(), 1);
  panel.close();
  panel.close();
  EXPECT_EQ(closed.count(), 1);
}

TEST_F(PanelActivation, GivesNoButtonTheFocusBeforeTheUserDoes) {
  panel.open(std::nullopt);
  const auto windows = QApplication::topLevelWidgets();
  const auto host = std::ranges::find_if(
      windows, [](const QWidget* window) { return qobject_cast<const PanelWindow*>(window); });
  ASSERT_NE(host, windows.end());
  EXPECT_TRUE(QTest::qWaitFor([&] { return (*host)->focusWidget() != nullptr; }));
  EXPECT_EQ(qobject_cast<QAbstractButton*>((*host)->focusWidget()), nullptr);
}

TEST(SingleWindow, IsMadeOnceAndMadeAnewAfterItWasClosed) {
  int made = 0;
  QWidget* newest = nullptr;
  SingleWindow window([&] {
    ++made;
    newest = new QWidget;
    return newest;
  });
  QSignalSpy closed(&window, &SingleWindow::closed);
  window.show({});
  window.show("token");
  EXPECT_EQ(made, 1);
  EXPECT_TRUE(window.isOpen());
  EXPECT_EQ(qgetenv("XDG_ACTIVATION_TOKEN"), "token");
  newest->close();
  EXPECT_TRUE(QTest::qWaitFor([&] { return !window.isOpen(); }, 10'000));
  EXPECT_EQ(closed.count(), 1);
  window.show({});
  EXPECT_EQ(made, 2);
}

TEST(SingleWindow, ComesBackFromTheTaskbar) {
  QWidget* made = nullptr;
  SingleWindow window([&] { return made = new QWidget; });
  window.show({});
  made->showMinimized();
  window.show({});
  EXPECT_FALSE(made->isMinimized());
}

} // namespace
} // namespace tidewell::test
