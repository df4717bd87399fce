#include "support/Details.h"
#include "support/Preferences.h"
#include "ui/charts/AxisCharts.h"
#include "ui/charts/RangeSelector.h"
#include "ui/components/ScrollPane.h"
#include "ui/processes/ProcessListView.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QAccessible>
#include <QScrollBar>
#include <QStackedWidget>
#include <QtTest/QTest>
#include <private/qguiapplication_p.h>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>

#include <algorithm>
#include <ostream>

namespace tidewell::test {
namespace {

constexpr auto staticText = QAccessible::StaticText;
constexpr auto heading = QAccessible::Heading;

// One element that a screen reader finds.
struct Spoken {
  QAccessible::Role role;
  std::string name;

  friend bool operator==(const Spoken&, const Spoken&) = default;
  friend std::ostream& operator<<(std::ostream& stream, const Spoken& spoken) {
    return stream << spoken.role << ' ' << spoken.name;
  }
};

QAccessibleInterface& accessible(QWidget& widget) {
  return *QAccessible::queryAccessibleInterface(&widget);
}

void collect(QAccessibleInterface& element, std::vector<Spoken>& all) {
  if (element.state().invisible) {
    return;
  }
  if (element.childCount() == 0) {
    all.push_back({element.role(), element.text(QAccessible::Name).toStdString()});
  }
  for (int index = 0; index < element.childCount(); ++index) {
    collect(*element.child(index), all);
  }
}

// What a screen reader finds in a widget, in order, without the lines between sections.
std::vector<Spoken> readAloud(QWidget& widget) {
  std::vector<Spoken> all;
  collect(accessible(widget), all);
  std::erase_if(all, [](const Spoken& spoken) { return spoken.role == QAccessible::Separator; });
  return all;
}

class AccessibilityTest : public testing::Test, protected Panel {};

TEST_F(AccessibilityTest, ReadsEverythingInOrder) {
  sampler.currentDownloadBytesPerSec.set(1'250'000);
  sampler.currentUploadBytesPerSec.set(12'000);
  sampler.latencyMs.set(23.6);
  speedTest.lastResult.set(SpeedTestResult{1'700'000'000.0, 245.6, 19.2, 812});
  open();
  const auto press = QAccessible::Button;
  const std::vector<Spoken> expected = {
      {staticText, "Current throughput"},
      {staticText, "Download 1.2 MB/s"},
      {staticText, "Download 10.0 Mbps"},
      {staticText, "Status Excellent"},
      {staticText, "Upload 12 KB/s"},
      {staticText, "Latency 24 ms"},
      {staticText, "Jitter 0.0 ms"},
      {staticText, "Packet Loss 0.0 %"},
      {QAccessible::Chart, "Bandwidth (last 5 min)"},
      {staticText, "Network Unknown"},
      {staticText, "Interface en0"},
      {staticText, "Local IP unknown"},
      {staticText, "Public IP unknown"},
      {staticText, "DNS unknown"},
      {staticText, "Speed Test Result: download 246 Mbps, upload 19 Mbps, 22:13"},
      {press, "Speed Test"},
      {press, "Copy IP"},
      {press, "Details"},
      {press, "Settings"},
      {press, "Quit"},
  };
  EXPECT_EQ(readAloud(*view), expected);
}

TEST_F(AccessibilityTest, DescribesTheChart) {
  sampler.snapshots.set(samples({1'000'000, 3'000'000}));
  open();
  auto& chart = accessible(only<MiniGraphView>());
  EXPECT_EQ(chart.text(QAccessible::Description).toStdString(),
            "Download: current 3.0 MB/s, average 2.0 MB/s, peak 3.0 MB/s. "
            "Upload: current 1.5 MB/s, average 1.0 MB/s, peak 1.5 MB/s. "
            "Scale from 0 to 24.0 Mbps.");
}

TEST_F(AccessibilityTest, IsPressedThroughTheInterface) {
  open();
  QAccessibleActionInterface* const actions = accessible(button(2)).actionInterface();
  ASSERT_NE(actions, nullptr);
  actions->doAction(QAccessibleActionInterface::pressAction());
  // The button is shown pressed for a moment before it acts.
  EXPECT_TRUE(QTest::qWaitFor([this] { return calls.openDetail == 1; }));
}

// Qt sends events only to a screen reader. There is no public way to enable one.
void setScreenReader(bool isThere) {
  QGuiApplicationPrivate::platformIntegration()->accessibility()->setActive(isThere);
}

// The process has one update handler, a plain function.
std::vector<std::string>* heard = nullptr;
void hear(QAccessibleEvent* event) {
  if (heard && event->type() == QAccessible::NameChanged) {
    heard->push_back(event->accessibleInterface()->text(QAccessible::Name).toStdString());
  }
}

TEST_F(AccessibilityTest, TellsOfEveryTextThatChangesAndOfNoOther) {
  open();
  std::vector<std::string> names;
  heard = &names;
  QAccessible::UpdateHandler before = QAccessible::installUpdateHandler(hear);
  setScreenReader(true);
  sampler.latencyMs.set(31.0);
  sampler.latencyMs.set(31.2); // reads the same
  monitor.connectionInfo.mutate([](ConnectionInfo& info) { info.dns = "9.9.9.9"; });
  speedTest.isRunning.set(true);
  setScreenReader(false);
  QAccessible::installUpdateHandler(before);
  heard = nullptr;
  EXPECT_EQ(names, (std::vector<std::string>{"Latency 31 ms", "DNS 9.9.9.9", "Testing..."}));
}

TEST_F(AccessibilityTest, ReadsLongNamesInFull) {
  const std::string name(200, 'W');
  monitor.connectionInfo.mutate([&](ConnectionInfo& info) { info.networkName = name; });
  open();
  EXPECT_EQ(row(0).accessibleName().toStdString(), "Network " + name);
  EXPECT_EQ(row(0).toolTip().toStdString(), name);
}

using All = std::vector<Spoken>;

// The content of a tab or section, without its scroll bar.
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
      {staticText, "Download"},
      {staticText, "Upload"},
      {staticText, "Current 1.2 MB/s"},
      {staticText, "Average 2.0 MB/s"},
      {staticText, "Peak 3.0 MB/s"},
      {staticText, "Total 6 MB"},
      {heading, "Active Processes"},
      {staticText, "Process, Download, Upload, Total, Usage"},
      {QAccessible::ListItem,
       "curl, PID 812, download 2.5 MB/s, upload 1 KB/s, total 12 MB, usage 40 %"},
  };
  EXPECT_EQ(contentOf(*pane(0).widget()), expected);
  EXPECT_EQ(only<BandwidthChart>(0).accessibleDescription().toStdString(),
            "Download: current 3.0 MB/s, average 2.0 MB/s, peak 3.0 MB/s. "
            "Upload: current 1.5 MB/s, average 1.0 MB/s, peak 1.5 MB/s. "
            "Scale from 0 to 25 Mbps.");
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
  EXPECT_EQ(diagnostics.at(2), (Spoken{staticText, "Status Connected"}));
  EXPECT_EQ(diagnostics.at(5), (Spoken{staticText, "Local IP unknown"}));
  EXPECT_EQ(diagnostics.at(10), (Spoken{staticText, "Latency 0.0 ms, good"}));
  EXPECT_NE(
      std::find(diagnostics.begin(), diagnostics.end(), (Spoken{QAccessible::Button, "Run Now"})),
      diagnostics.end());
}

TEST_F(DetailAccessibilityTest, TellsWhichTabAndWhichRangeAreChosen) {
  open(1);
  auto& bar = accessible(tabs());
  EXPECT_EQ(bar.role(), QAccessible::PageTabList);
  for (int index = 0; index < 4; ++index) {
    EXPECT_EQ(bar.child(index)->role(), QAccessible::PageTab);
    EXPECT_EQ(bar.child(index)->text(QAccessible::Name), tabs().tabText(index));
    EXPECT_EQ(bar.child(index)->state().focused, index == 1) << index;
  }
  open(0);
  auto& range = accessible(*all<RangeButton>(0)[1]);
  EXPECT_TRUE(range.state().checked);
}

TEST_F(DetailAccessibilityTest, SaysInWordsWhatTheColoursOfTheDiagnosticsMean) {
  open(3);
  sampler.latencyMs.set(62.0);
  sampler.jitterMs.set(4.0);
  sampler.packetLossPercent.set(30.0);
  const All rows = contentOf(*pane(3).widget());
  EXPECT_EQ(rows.at(10), (Spoken{staticText, "Latency 62.0 ms, fair"}));
  EXPECT_EQ(rows.at(11), (Spoken{staticText, "Jitter 4.0 ms, good"}));
  EXPECT_EQ(rows.at(12), (Spoken{staticText, "Packet Loss 30.0%, poor"}));
}

TEST_F(DetailAccessibilityTest, GroupsItsLists) {
  tracker.processes.set(programs({"a", "b"}));
  open(1);
  auto& list = accessible(only<ProcessListView>(1));
  EXPECT_EQ(list.role(), QAccessible::List);
  EXPECT_EQ(list.text(QAccessible::Name), "Active Processes");
}

class SettingsAccessibilityTest : public testing::Test, protected Preferences {};

TEST_F(SettingsAccessibilityTest, NamesAndDescribesEveryControl) {
  open();
  auto& upload = accessible(toggle("Show Upload Speed"));
  EXPECT_EQ(upload.role(), QAccessible::CheckBox);
  EXPECT_EQ(upload.text(QAccessible::Description), "Display upload speed alongside download");
  EXPECT_TRUE(upload.state().checked);
  auto& days = accessible(list("Keep History"));
  const auto labels = days.relations(QAccessible::Label);
  ASSERT_EQ(labels.size(), 1);
  EXPECT_EQ(labels.front().first->text(QAccessible::Name), "Keep History");
  EXPECT_EQ(days.role(), QAccessible::ComboBox);
  EXPECT_EQ(days.text(QAccessible::Value), "30 days");
  auto& alerts = accessible(entry(SettingsSection::alerts));
  EXPECT_EQ(alerts.role(), QAccessible::RadioButton);
  EXPECT_EQ(alerts.text(QAccessible::Name), "Alerts");
}

TEST_F(SettingsAccessibilityTest, ABoxIsTheWholeButton) {
  open();
  const auto expectWhole = [](QWidget& button) {
    EXPECT_EQ(accessible(button).rect(), QRect(button.mapToGlobal(QPoint()), button.size()))
        << button.accessibleName().toStdString();
  };
  expectWhole(toggle("Check for Updates"));
  expectWhole(entry(SettingsSection::alerts));
}

TEST_F(SettingsAccessibilityTest, TurnsASwitchWithoutAClick) {
  open();
  auto& upload = accessible(toggle("Show Upload Speed"));
  upload.actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
  EXPECT_FALSE(settings.showUploadInMenubar());
  EXPECT_FALSE(upload.state().checked);
}

TEST_F(SettingsAccessibilityTest, IsAWindowWhoseContentIsNamedToo) {
  open(SettingsSection::data);
  EXPECT_EQ(accessible(*view).role(), QAccessible::Window);
  auto* const scrolled =
      qobject_cast<ScrollPane*>(view->findChild<QStackedWidget*>()->currentWidget());
  auto& pane = accessible(*scrolled);
  EXPECT_EQ(pane.role(), QAccessible::Pane);
  EXPECT_EQ(pane.text(QAccessible::Name), "Data");
  auto& bar = accessible(*scrolled->verticalScrollBar());
  EXPECT_EQ(bar.text(QAccessible::Name), "Data");
  auto& options = accessible(*list("Keep History").view());
  EXPECT_EQ(options.text(QAccessible::Name), "Keep History");
}

} // namespace
} // namespace tidewell::test
