#include "support/Details.h"
#include "support/Evening.h"
#include "support/PaintLog.h"
#include "support/Preferences.h"
#include "support/ReadAloud.h"
#include "ui/charts/AxisCharts.h"
#include "ui/charts/RangeSelector.h"
#include "ui/components/ScrollPane.h"
#include "ui/components/StatCell.h"
#include "ui/components/TextLine.h"
#include "ui/components/ValueRow.h"
#include "ui/processes/ProcessListView.h"
#include "ui/processes/ProcessRow.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QAccessible>
#include <QScrollBar>
#include <QStackedWidget>

namespace tidewell::test {
namespace {

constexpr auto text = QAccessible::StaticText;
constexpr auto heading = QAccessible::Heading;

using All = std::vector<Spoken>;

// Of a tab or section, without the bar that scrolls it.
All contentOf(QWidget& widget) {
  All all = readAloud(widget);
  std::erase_if(all, [](const Spoken& spoken) { return spoken.role == QAccessible::ScrollBar; });
  return all;
}

class DetailAccessibilityTest : public testing::Test, protected Details {};

TEST_F(DetailAccessibilityTest, ReadsTheOverviewInOrder) {
  sampler.currentDownloadBytesPerSec.set(1'250'000);
  sampler.snapshots.set(samples({1'000'000, 3'000'000}));
  tracker.processes.set({{812, "curl", 2'500'000, 1'000, 12'000'000, 0.4}});
  open();
  const All expected = {
      {heading, "Bandwidth Over Time"},
      {QAccessible::RadioButton, "5m"},
      {QAccessible::RadioButton, "1h"},
      {QAccessible::RadioButton, "24h"},
      {QAccessible::RadioButton, "7d"},
      {QAccessible::Chart, "Bandwidth Over Time"},
      {text, "Download"},
      {text, "Upload"},
      {text, "Current 1.2 MB/s"},
      {text, "Average 2.0 MB/s"},
      {text, "Peak 3.0 MB/s"},
      {text, "Total 6 MB"},
      {heading, "Active Processes"},
      {text, "Process, Download, Upload, Total, Usage"},
      {QAccessible::ListItem,
       "curl, PID 812, download 2.5 MB/s, upload 1 KB/s, total 12 MB, usage 40 %"},
  };
  EXPECT_EQ(contentOf(*pane(0).widget()), expected);
  EXPECT_EQ(only<BandwidthChart>(0).accessibleDescription().toStdString(),
            "Download: current 3.0 MB/s, average 2.0 MB/s, peak 3.0 MB/s. "
            "Upload: current 1.5 MB/s, average 1.0 MB/s, peak 1.5 MB/s.");
}

TEST_F(DetailAccessibilityTest, ReadsTheHistoryAndTheDiagnostics) {
  sampler.snapshots.set(samples({1'000'000}));
  open(2);
  EXPECT_EQ(contentOf(*pane(2).widget()),
            (All{{heading, "Speed History"},
                 {heading, "Latency Over Time"},
                 {QAccessible::Chart, "Latency Over Time"},
                 {heading, "Recent Readings"},
                 {QAccessible::ListItem, "01:46, download 1.0 MB/s, upload 500 KB/s, "
                                         "latency 20 ms"}}));
  open(3);
  const All diagnostics = contentOf(*pane(3).widget());
  EXPECT_EQ(diagnostics.at(1), (Spoken{heading, "Connection"}));
  EXPECT_EQ(diagnostics.at(2), (Spoken{text, "Status Connected"}));
  EXPECT_EQ(diagnostics.at(5), (Spoken{text, "Local IP unknown"}));
  EXPECT_EQ(diagnostics.at(10), (Spoken{text, "Latency 0.0 ms"}));
  EXPECT_NE(
      std::find(diagnostics.begin(), diagnostics.end(), (Spoken{QAccessible::Button, "Run Now"})),
      diagnostics.end());
}

TEST_F(DetailAccessibilityTest, TellsWhichTabAndWhichRangeAreChosen) {
  open(1);
  auto* const bar = QAccessible::queryAccessibleInterface(&tabs());
  EXPECT_EQ(bar->role(), QAccessible::PageTabList);
  for (int index = 0; index < 4; ++index) {
    EXPECT_EQ(bar->child(index)->role(), QAccessible::PageTab);
    EXPECT_EQ(bar->child(index)->text(QAccessible::Name), tabs().tabText(index));
    EXPECT_EQ(bar->child(index)->state().focused, index == 1) << index;
  }
  open(0);
  auto* const range = QAccessible::queryAccessibleInterface(all<RangeButton>(0)[1]);
  EXPECT_TRUE(range->state().checked);
}

TEST_F(DetailAccessibilityTest, GroupsItsLists) {
  tracker.processes.set(programs({"a", "b"}));
  open(1);
  auto* const list = QAccessible::queryAccessibleInterface(&only<ProcessListView>(1));
  EXPECT_EQ(list->role(), QAccessible::List);
  EXPECT_EQ(list->text(QAccessible::Name), "Active Processes");
}

class SettingsAccessibilityTest : public testing::Test, protected Preferences {};

TEST_F(SettingsAccessibilityTest, NamesAndDescribesEveryControl) {
  open();
  auto* const upload = QAccessible::queryAccessibleInterface(&toggle("Show Upload Speed"));
  EXPECT_EQ(upload->role(), QAccessible::CheckBox);
  EXPECT_EQ(upload->text(QAccessible::Description), "Display upload speed alongside download");
  EXPECT_TRUE(upload->state().checked);
  auto* const days = QAccessible::queryAccessibleInterface(&list("Keep History"));
  const auto labels = days->relations(QAccessible::Label);
  ASSERT_EQ(labels.size(), 1);
  EXPECT_EQ(labels.front().first->text(QAccessible::Name), "Keep History");
  EXPECT_EQ(days->role(), QAccessible::ComboBox);
  EXPECT_EQ(days->text(QAccessible::Value), "30 days");
  auto* const alerts = QAccessible::queryAccessibleInterface(&entry(SettingsSection::alerts));
  EXPECT_EQ(alerts->role(), QAccessible::RadioButton);
  EXPECT_EQ(alerts->text(QAccessible::Name), "Alerts");
}

TEST_F(SettingsAccessibilityTest, TurnsASwitchWithoutAClick) {
  open();
  auto* const upload = QAccessible::queryAccessibleInterface(&toggle("Show Upload Speed"));
  upload->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
  EXPECT_FALSE(settings.showUploadInMenubar());
  EXPECT_FALSE(upload->state().checked);
}

TEST_F(SettingsAccessibilityTest, IsAWindowWhoseContentIsNamedToo) {
  open(SettingsSection::data);
  EXPECT_EQ(QAccessible::queryAccessibleInterface(view.get())->role(), QAccessible::Window);
  auto* const scrolled =
      qobject_cast<ScrollPane*>(view->findChild<QStackedWidget*>()->currentWidget());
  auto* const pane = QAccessible::queryAccessibleInterface(scrolled);
  EXPECT_EQ(pane->role(), QAccessible::Pane);
  EXPECT_EQ(pane->text(QAccessible::Name), "Data");
  auto* const bar = QAccessible::queryAccessibleInterface(scrolled->verticalScrollBar());
  EXPECT_EQ(bar->text(QAccessible::Name), "Data");
  auto* const options = QAccessible::queryAccessibleInterface(list("Keep History").view());
  EXPECT_EQ(options->text(QAccessible::Name), "Keep History");
}

class DetailRepaintTest : public testing::Test, protected Details {
protected:
  void watch(int tab) {
    sampler.snapshots.set(samples({1'000, 2'000, 3'000}));
    tracker.processes.set(programs({"a", "b", "c"}));
    open(tab);
    log = std::make_unique<PaintLog>(*view);
  }
  [[nodiscard]] bool isPainted(const QWidget& widget) const {
    return !log->where(widget).isEmpty();
  }
  std::unique_ptr<PaintLog> log;
};

TEST_F(DetailRepaintTest, PaintsNothingWhenAllReadsTheSame) {
  watch(0);
  sampler.currentDownloadBytesPerSec.set(999);
  tracker.processes.set(programs({"a", "b", "c"}));
  sampler.latencyMs.set(0.01);
  monitor.connectionInfo.set(ConnectionInfo{});
  Panel::settle();
  for (const QWidget* widget : view->findChildren<QWidget*>()) {
    EXPECT_FALSE(isPainted(*widget)) << widget->metaObject()->className();
  }
}

TEST_F(DetailRepaintTest, PaintsOnlyWhatANewSampleChanges) {
  watch(0);
  sampler.snapshots.set(samples({1'000, 2'000, 3'000, 2'000}));
  Panel::settle();
  EXPECT_TRUE(isPainted(only<BandwidthChart>(0)));
  for (const StatCell* card : all<StatCell>(0)) {
    EXPECT_FALSE(isPainted(*card)) << card->figure().label.toStdString();
  }
  EXPECT_FALSE(isPainted(*all<ProcessRow>(0)[0]));
  EXPECT_FALSE(isPainted(*all<RangeButton>(0)[0]));
  EXPECT_FALSE(isPainted(tabs()));
}

TEST_F(DetailRepaintTest, PaintsOnlyTheRowThatChanged) {
  watch(1);
  auto list = programs({"a", "b", "c"});
  list[1].downloadBytesPerSec *= 2;
  tracker.processes.set(list);
  Panel::settle();
  EXPECT_FALSE(isPainted(*all<ProcessRow>(1)[0]));
  EXPECT_TRUE(isPainted(*all<ProcessRow>(1)[1]));
  EXPECT_FALSE(isPainted(*all<ProcessRow>(1)[2]));
}

TEST_F(DetailRepaintTest, PaintsOnlyTheDiagnosticThatChanged) {
  watch(3);
  sampler.jitterMs.set(7.0);
  Panel::settle();
  for (const ValueRow* row : all<ValueRow>(3)) {
    EXPECT_EQ(isPainted(*row), row->key() == "Jitter") << row->key().toStdString();
  }
}

} // namespace
} // namespace tidewell::test
