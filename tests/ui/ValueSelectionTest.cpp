#include "support/Details.h"
#include "support/ImageComparison.h"
#include "ui/components/ValueRow.h"
#include "ui/tokens/TWColor.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QContextMenuEvent>
#include <QMenu>
#include <QScrollBar>
#include <QtTest/QTest>

namespace tidewell::test {
namespace {

constexpr int diagnosticsTab = 3;
const std::string longAddress = "2001:0db8:85a3:0000:0000:8a2e:0370:7334%" + std::string(40, 'w');

class ValueSelectionTest : public testing::Test, protected Details {
protected:
  void SetUp() override {
    monitor.connectionInfo.set({"Riverside", "Ethernet (eth0)",
                                ConnectionInfo::InterfaceType::ethernet, "192.168.1.20",
                                longAddress, "192.168.1.1", std::nullopt});
    open(diagnosticsTab);
    view->activateWindow();
    Panel::settle();
  }

  [[nodiscard]] ValueRow& row(std::size_t index) const {
    return *all<ValueRow>(diagnosticsTab).at(index);
  }
  [[nodiscard]] std::string selected() const {
    const auto* const focused = qobject_cast<const ValueRow*>(view->focusWidget());
    return focused != nullptr ? focused->key().toStdString() : "";
  }
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(view->focusWidget(), key, modifiers);
  }
  void click(QWidget& widget) {
    // Through the window, which gives the focus.
    QTest::mouseClick(view->windowHandle(), Qt::LeftButton, {},
                      widget.mapTo(view.get(), widget.rect().center()));
  }
};

TEST_F(ValueSelectionTest, CopiesTheWholeValueThatWasClicked) {
  EXPECT_EQ(selected(), "");
  click(row(3));
  press(Qt::Key_C, Qt::ControlModifier);
  click(row(4)); // it is shown cut
  press(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(copied, (Texts{"192.168.1.20", longAddress}));
}

TEST_F(ValueSelectionTest, ShowsTheSelectedValueOnAGroundOfItsOwn) {
  const QRect value(row(3).width() - 100, 0, 100, row(3).height());
  const auto tinted = [&] {
    return pixelsWhere(picture(row(3)), value,
                       [](const QColor& color) { return color.rgb() == TWColor::accentDim.rgb(); });
  };
  EXPECT_EQ(tinted(), 0);
  click(row(3));
  EXPECT_GT(tinted(), 500);
  click(row(5));
  EXPECT_EQ(tinted(), 0);
}

TEST_F(ValueSelectionTest, ReachesEveryValueWithTheKeyboard) {
  tabs().setFocus();
  press(Qt::Key_Tab);
  press(Qt::Key_Tab); // after the page, which scrolls
  Texts keys;
  for (int step = 0; step < 10; ++step) {
    keys.push_back(selected());
    press(Qt::Key_Down);
  }
  EXPECT_EQ(keys, (Texts{"Status", "Interface", "Network", "Local IP", "Public IP", "DNS Server",
                         "Interface Type", "Latency", "Jitter", "Packet Loss"}));
  EXPECT_EQ(selected(), "Packet Loss");
  EXPECT_GT(pane(diagnosticsTab).verticalScrollBar()->value(), 0)
      << "the row would be out of sight";
  press(Qt::Key_Up);
  press(Qt::Key_C, Qt::ControlModifier);
  press(Qt::Key_Home);
  press(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(copied, (Texts{"0.0 ms", "Connected"}));
  press(Qt::Key_End);
  EXPECT_EQ(selected(), "Packet Loss");
  press(Qt::Key_Tab);
  press(Qt::Key_Backtab);
  EXPECT_EQ(selected(), "Packet Loss") << "Tab returns to the selected value";
}

TEST_F(ValueSelectionTest, GoesBackToTheFirstValueIfTheSelectedOneIsHidden) {
  speedTest.lastResult.set(SpeedTestResult{1'700'000'000.0, 245.64, 19.25, 812});
  row(0).setFocus();
  press(Qt::Key_End);
  EXPECT_EQ(selected(), "Tested At");
  speedTest.isRunning.set(true);
  EXPECT_NE(selected(), "Tested At");
  tabs().setFocus();
  press(Qt::Key_Tab);
  press(Qt::Key_Tab);
  EXPECT_EQ(selected(), "Status");
}

TEST_F(ValueSelectionTest, CopiesThroughTheContextMenu) {
  QContextMenuEvent event(QContextMenuEvent::Mouse, {5, 5}, row(5).mapToGlobal(QPoint(5, 5)));
  QCoreApplication::sendEvent(&row(5), &event);
  auto* const menu = row(5).findChild<QMenu*>();
  ASSERT_NE(menu, nullptr);
  ASSERT_EQ(menu->actions().size(), 1);
  EXPECT_EQ(menu->actions().front()->text(), "Copy");
  EXPECT_EQ(menu->palette().color(QPalette::Window), TWColor::surface2);
  EXPECT_EQ(selected(), "DNS Server");
  menu->actions().front()->trigger();
  EXPECT_EQ(copied, Texts{"192.168.1.1"});
  menu->close();
}

TEST_F(ValueSelectionTest, TellsAssistiveTechnologyWhatCanBeSelected) {
  click(row(3));
  const auto& state = QAccessible::queryAccessibleInterface(&row(3))->state();
  EXPECT_TRUE(state.focusable);
  EXPECT_TRUE(state.focused);
}

} // namespace
} // namespace tidewell::test
