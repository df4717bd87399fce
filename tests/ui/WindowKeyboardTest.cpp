#include "support/Details.h"
#include "support/ImageComparison.h"
#include "support/Preferences.h"
#include "ui/components/Buttons.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QScrollBar>
#include <QWindow>
#include <QtTest/QTest>

namespace tidewell::test {
namespace {

std::string nameOfFocus(const QWidget& window) {
  const QWidget* const focus = window.focusWidget();
  if (focus == nullptr || focus == &window) {
    return "";
  }
  const auto* const button = qobject_cast<const QAbstractButton*>(focus);
  const QString name = focus->accessibleName();
  return (name.isEmpty() && button != nullptr ? button->text() : name).toStdString();
}

// The names of the widgets that Tab reaches, in order, until the first one comes again.
Texts reached(QWidget& window) {
  Texts names;
  for (int step = 0; step < 20; ++step) {
    QTest::keyClick(window.focusWidget() ? window.focusWidget() : &window, Qt::Key_Tab);
    const std::string name = nameOfFocus(window);
    if (!names.empty() && name == names.front()) {
      break;
    }
    names.push_back(name);
  }
  return names;
}

void click(QWidget& widget, QPoint point) {
  // Through the window, which gives the focus.
  QTest::mouseClick(widget.window()->windowHandle(), Qt::LeftButton, {},
                    widget.mapTo(widget.window(), point));
}

void press(QWidget& window, Qt::Key key) { QTest::keyClick(window.focusWidget(), key); }

class DetailKeyboardTest : public testing::Test, protected Details {
protected:
  void use(int tab) {
    tracker.processes.set(programs({"a", "b", "c", "d", "e", "f", "g", "h", "i", "j"}));
    open(tab);
    view->activateWindow();
    Panel::settle();
  }
};

TEST_F(DetailKeyboardTest, MarksNothingBeforeItIsUsed) {
  use(0);
  EXPECT_EQ(nameOfFocus(*view), "");
}

TEST_F(DetailKeyboardTest, ReachesEverythingInReadingOrder) {
  use(0);
  EXPECT_EQ(reached(*view), (Texts{"Tabs", "Overview", "1h"}));
  use(1);
  EXPECT_EQ(reached(*view), (Texts{"Tabs", "Processes"}));
  use(2);
  EXPECT_EQ(reached(*view), (Texts{"Tabs"})) << "there is nothing to scroll";
  use(3);
  EXPECT_EQ(reached(*view), (Texts{"Tabs", "Diagnostics", "Status Connected", "Run Now"}));
}

TEST_F(DetailKeyboardTest, SelectsTabsWithTheArrows) {
  use(0);
  tabs().setFocus();
  press(*view, Qt::Key_Right);
  EXPECT_EQ(view->selectedTab(), 1);
  press(*view, Qt::Key_Right);
  press(*view, Qt::Key_Left);
  EXPECT_EQ(view->selectedTab(), 1);
}

TEST_F(DetailKeyboardTest, ChangesTabsFromEverywhere) {
  use(0);
  const auto press = [this](Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::ControlModifier) {
    QTest::keyClick(&pane(view->selectedTab()), key, modifiers);
    return view->selectedTab();
  };
  EXPECT_EQ(press(Qt::Key_Tab), 1);
  EXPECT_EQ(press(Qt::Key_PageDown), 2);
  EXPECT_EQ(press(Qt::Key_PageUp), 1);
  EXPECT_EQ(press(Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier), 0);
  EXPECT_EQ(press(Qt::Key_PageUp), 3);
  EXPECT_EQ(press(Qt::Key_Tab), 0);
}

TEST_F(DetailKeyboardTest, ClosesWithEscape) {
  use(0);
  QTest::keyClick(view.get(), Qt::Key_Escape);
  EXPECT_FALSE(view->isVisible());
}

TEST_F(DetailKeyboardTest, TabsAnswerToHoverAndPress) {
  use(0);
  const QPoint point = tabs().tabRect(0).center(); // selected, so that only the ground changes
  const QImage before = picture(tabs());
  QTest::mouseMove(view->windowHandle(), tabs().mapTo(view.get(), point));
  const QImage hovered = picture(tabs());
  EXPECT_NE(hovered, before);
  QTest::mousePress(view->windowHandle(), Qt::LeftButton, {}, tabs().mapTo(view.get(), point));
  EXPECT_NE(picture(tabs()), hovered);
  QTest::mouseRelease(view->windowHandle(), Qt::LeftButton, {}, tabs().mapTo(view.get(), point));
  EXPECT_EQ(picture(tabs()), hovered);
}

TEST_F(DetailKeyboardTest, RangesAnswerToPress) {
  use(0);
  for (QRadioButton* const range : all<QRadioButton>(0)) {
    const QImage before = picture(*range);
    range->setDown(true);
    EXPECT_NE(picture(*range), before) << range->text().toStdString();
  }
}

TEST_F(DetailKeyboardTest, ChoosesRangesWithTheArrows) {
  use(0);
  all<QRadioButton>(0)[1]->setFocus();
  press(*view, Qt::Key_Right);
  EXPECT_EQ(view->timeRange(), TimeRange::twentyFourHour);
  EXPECT_EQ(nameOfFocus(*view), "24h");
  press(*view, Qt::Key_Left);
  press(*view, Qt::Key_Left);
  EXPECT_EQ(view->timeRange(), TimeRange::fiveMin);
}

TEST_F(DetailKeyboardTest, ScrollsWithTheKeys) {
  use(1);
  pane(1).setFocus();
  press(*view, Qt::Key_PageDown);
  EXPECT_GT(pane(1).verticalScrollBar()->value(), 50);
  press(*view, Qt::Key_Up);
  press(*view, Qt::Key_PageUp);
  EXPECT_EQ(pane(1).verticalScrollBar()->value(), 0);
}

TEST_F(DetailKeyboardTest, RunsTheSpeedTestWithSpaceAndEnter) {
  use(3);
  for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
    QTest::keyClick(&only<TextButton>(3), key);
  }
  EXPECT_EQ(testsRun, 3);
}

TEST_F(DetailKeyboardTest, GoesOnFromAClickedTab) {
  use(0);
  all<QRadioButton>(0)[1]->setFocus();
  click(tabs(), tabs().tabRect(2).center());
  EXPECT_EQ(nameOfFocus(*view), "Tabs");
  press(*view, Qt::Key_Right);
  EXPECT_EQ(view->selectedTab(), 3);
  EXPECT_EQ(reached(*view).front(), "Diagnostics");
}

TEST_F(DetailKeyboardTest, DoesNotMoveTheFocusIntoThePageOfATabThatIsChosenOtherwise) {
  use(0);
  all<QRadioButton>(0)[1]->setFocus();
  tabs().setCurrentIndex(3); // as assistive technology does
  EXPECT_EQ(nameOfFocus(*view), "Tabs");
}

TEST_F(DetailKeyboardTest, MarksAClickedTabOnceAKeyIsPressed) {
  use(1);
  QTest::mouseMove(view->windowHandle(),
                   tabs().mapTo(view.get(), tabs().tabRect(1).center())); // shows the hover
  const QImage before = picture(tabs());
  click(tabs(), tabs().tabRect(1).center());
  EXPECT_EQ(picture(tabs()), before);
  press(*view, Qt::Key_Shift);
  EXPECT_NE(picture(tabs()), before);
}

TEST_F(DetailKeyboardTest, GoesOnFromAClickedRange) {
  use(0);
  pane(0).setFocus();
  QRadioButton& week = *all<QRadioButton>(0).back();
  click(week, week.rect().center());
  press(*view, Qt::Key_Left);
  EXPECT_EQ(view->timeRange(), TimeRange::twentyFourHour);
}

class SettingsKeyboardTest : public testing::Test, protected Preferences {
protected:
  void use(SettingsSection section) {
    open(section);
    view->activateWindow();
    Panel::settle();
  }
};

TEST_F(SettingsKeyboardTest, ReachesEverythingInReadingOrder) {
  use(SettingsSection::general);
  EXPECT_EQ(reached(*view), (Texts{"General", "Launch at Login", "Check for Updates",
                                   "Refresh Interval", "Monitor Interface", "Track Per-Process"}));
  use(SettingsSection::alerts);
  EXPECT_EQ(reached(*view), (Texts{"Alerts", "Enable Notifications", "Slow Speed Warning",
                                   "High Latency Warning"}));
  use(SettingsSection::advanced);
  EXPECT_EQ(reached(*view), (Texts{"Advanced"}));
}

TEST_F(SettingsKeyboardTest, ClosesWithEscape) {
  use(SettingsSection::general);
  QTest::keyClick(view.get(), Qt::Key_Escape);
  EXPECT_FALSE(view->isVisible());
}

TEST_F(SettingsKeyboardTest, SwitchesByAClickOnTheTexts) {
  use(SettingsSection::general);
  ToggleSwitch& toggle = this->toggle("Check for Updates");
  const bool before = toggle.isChecked();
  click(*toggle.parentWidget(), {30, 15});
  EXPECT_NE(toggle.isChecked(), before);
  click(*list("Refresh Interval").parentWidget(), {30, 15});
  click(toggle, toggle.rect().center());
  EXPECT_EQ(toggle.isChecked(), before);
}

TEST_F(SettingsKeyboardTest, ChoosesSectionsWithTheArrows) {
  use(SettingsSection::general);
  entry(SettingsSection::general).setFocus();
  press(*view, Qt::Key_Down);
  press(*view, Qt::Key_Down);
  EXPECT_EQ(view->selectedSection(), SettingsSection::display);
  press(*view, Qt::Key_Up);
  EXPECT_EQ(view->selectedSection(), SettingsSection::alerts);
}

TEST_F(SettingsKeyboardTest, GoesOnFromAClickedSectionAndStoresNothing) {
  use(SettingsSection::general);
  for (QWidget* const focused :
       {static_cast<QWidget*>(view.get()), static_cast<QWidget*>(&list("Refresh Interval"))}) {
    focused->setFocus();
    click(entry(SettingsSection::data), {30, 10});
    EXPECT_EQ(nameOfFocus(*view), "Data");
    press(*view, Qt::Key_Down);
    EXPECT_EQ(view->selectedSection(), SettingsSection::advanced);
    press(*view, Qt::Key_Up);
    EXPECT_EQ(reached(*view).front(), "Keep History");
    click(entry(SettingsSection::general), {30, 10});
  }
  scheduler.settle();
  EXPECT_FALSE(store.value("dataRetentionDays").has_value());
}

TEST_F(SettingsKeyboardTest, DoesNotMoveTheFocusIntoThePageOfASectionThatIsChosenOtherwise) {
  use(SettingsSection::general);
  list("Refresh Interval").setFocus();
  entry(SettingsSection::data).click(); // as assistive technology does
  EXPECT_EQ(nameOfFocus(*view), "Data");
}

TEST_F(SettingsKeyboardTest, MarksAClickedSectionOnceAKeyIsPressed) {
  use(SettingsSection::data);
  QWidget& data = entry(SettingsSection::data);
  QTest::mouseMove(&data); // its look under the pointer is the same
  const QImage before = picture(data);
  click(data, {30, 10});
  EXPECT_EQ(picture(data), before);
  press(*view, Qt::Key_Shift);
  EXPECT_NE(picture(data), before);
}

TEST_F(SettingsKeyboardTest, TurnsSwitchesWithSpaceAndEnter) {
  use(SettingsSection::display);
  ToggleSwitch& upload = toggle("Show Upload Speed");
  for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
    const bool before = settings.showUploadInMenubar();
    QTest::keyClick(&upload, key);
    EXPECT_EQ(settings.showUploadInMenubar(), !before);
  }
}

TEST_F(SettingsKeyboardTest, ChoosesWithTheArrowsAndOpensTheListWithSpace) {
  use(SettingsSection::data);
  ChoiceList& days = list("Keep History");
  days.setFocus();
  press(*view, Qt::Key_Down);
  EXPECT_EQ(settings.dataRetentionDays(), 90);
  press(*view, Qt::Key_Space);
  ASSERT_TRUE(days.view()->isVisible());
  QTest::keyClick(days.view(), Qt::Key_Down);
  EXPECT_EQ(settings.dataRetentionDays(), 90) << "nothing is chosen yet";
  QTest::keyClick(days.view(), Qt::Key_Return);
  EXPECT_EQ(settings.dataRetentionDays(), 365);
}

} // namespace
} // namespace tidewell::test
