#include "support/Details.h"
#include "support/ImageComparison.h"
#include "ui/charts/AxisCharts.h"
#include "ui/charts/RangeSelector.h"
#include "ui/components/StatCell.h"
#include "ui/components/TextLine.h"
#include "ui/processes/ProcessListView.h"
#include "ui/processes/ProcessRow.h"
#include "ui/tokens/TWColor.h"

#include <gtest/gtest.h>

#include <QScrollBar>
#include <QtTest/QTest>

#include <algorithm>
#include <cmath>

namespace tidewell::test {
namespace {

class DetailWindowTest : public testing::Test, protected Details {
protected:
  [[nodiscard]] Texts cards() const {
    return textsOf(all<StatCell>(0), [](const StatCell* card) { return textOf(*card); });
  }
  [[nodiscard]] std::string chosenRange() const {
    for (const RangeButton* button : all<RangeButton>(0)) {
      if (button->isChecked()) {
        return button->text().toStdString();
      }
    }
    return {};
  }
  [[nodiscard]] RangeButton& range(std::size_t index) const {
    return *all<RangeButton>(0).at(index);
  }
};

TEST_F(DetailWindowTest, OpensInItsSizeUnderItsTitleOnTheFirstTab) {
  open();
  EXPECT_EQ(view->windowTitle(), QString::fromUtf8("Tidewell \u2014 Network Details"));
  EXPECT_EQ(view->size(), QSize(680, 520));
  EXPECT_EQ(view->minimumSize(), QSize(680, 520));
  EXPECT_EQ(view->selectedTab(), 0);
  EXPECT_EQ(view->timeRange(), DetailWindowView::TimeRange::oneHour);
}

TEST_F(DetailWindowTest, HasFourTabs) {
  open();
  Texts titles;
  for (int index = 0; index < tabs().count(); ++index) {
    titles.push_back(tabs().tabText(index).toStdString());
  }
  EXPECT_EQ(titles, (Texts{"Overview", "Processes", "History", "Diagnostics"}));
}

TEST_F(DetailWindowTest, SelectsATabByAClick) {
  open();
  QTest::mouseClick(&tabs(), Qt::LeftButton, {}, tabs().tabRect(2).center());
  EXPECT_EQ(view->selectedTab(), 2);
  EXPECT_TRUE(pane(2).isVisible());
  EXPECT_FALSE(pane(0).isVisible());
}

TEST_F(DetailWindowTest, MarksTheSelectedTabWithABarOfTwoPixels) {
  open(1);
  const QImage image = picture(tabs());
  const QRect selected = tabs().tabRect(1);
  for (const int y : {selected.bottom() - 1, selected.bottom()}) {
    EXPECT_EQ(image.pixelColor(selected.center().x(), y).name(), TWColor::accent.name());
    EXPECT_EQ(image.pixelColor(tabs().tabRect(0).center().x(), y).alpha(), 0);
  }
  EXPECT_EQ(image.pixelColor(selected.center().x(), selected.bottom() - 2).alpha(), 0);
}

TEST_F(DetailWindowTest, PadsItsTabsAndItsContent) {
  open();
  EXPECT_EQ(tabs().pos(), QPoint(16, 16));
  EXPECT_EQ(pane(0).mapTo(view.get(), QPoint()).y(), 16 + tabs().height() + 16);
  const QWidget& title = only<TextLine>(0);
  EXPECT_EQ(title.mapTo(view.get(), QPoint()).x(), 24);
  const StatCell& last = *all<StatCell>(0).back();
  EXPECT_EQ(last.mapTo(view.get(), QPoint(last.width(), 0)).x(), 680 - 24);
  EXPECT_EQ(only<BandwidthChart>(0).height(), 200);
}

TEST_F(DetailWindowTest, NeverScrollsSideways) {
  tracker.processes.set(programs({std::string(500, 'W')}));
  open();
  for (int tab = 0; tab < 4; ++tab) {
    tabs().setCurrentIndex(tab);
    Panel::settle();
    EXPECT_EQ(pane(tab).horizontalScrollBar()->maximum(), 0);
  }
}

TEST_F(DetailWindowTest, ShowsTheRateOfTheMomentWhileThereAreNoSamples) {
  sampler.currentDownloadBytesPerSec.set(12'345);
  open();
  EXPECT_EQ(cards(), (Texts{"Current|12 KB/s|", "Average|0 KB/s|", "Peak|0 KB/s|", "Total|0 MB|"}));
}

TEST_F(DetailWindowTest, ShowsFiguresOfAllSamples) {
  sampler.snapshots.set(samples({1'000, 2'000, 4'000}));
  open();
  EXPECT_EQ(cards(), (Texts{"Current|0 KB/s|", "Average|2 KB/s|", "Peak|4 KB/s|", "Total|0 MB|"}));
  sampler.snapshots.set(samples(std::vector<std::int64_t>(300, 10'000'000'000)));
  EXPECT_EQ(cards(), (Texts{"Current|0 KB/s|", "Average|10.0 GB/s|", "Peak|10.0 GB/s|",
                            "Total|4500.0 GB|"}));
}

TEST_F(DetailWindowTest, CutsTheAverageTowardsZero) {
  sampler.snapshots.set(samples({1'999'999, 1'999'999, 2'000'000})); // 1 999 999.33
  open();
  EXPECT_EQ(cards()[1], "Average|2.0 MB/s|");
  sampler.snapshots.set(samples({1'499, 1'500})); // 1 499.5; 1 500 would be 2 KB/s
  EXPECT_EQ(cards()[1], "Average|1 KB/s|");
}

TEST_F(DetailWindowTest, NamesItsRangesAndItsLines) {
  open();
  EXPECT_EQ(textsOf(all<RangeButton>(0),
                    [](const RangeButton* button) { return button->text().toStdString(); }),
            (Texts{"5m", "1h", "24h", "7d"}));
  EXPECT_EQ(all<LegendItem>(0).at(0)->accessibleName(), "Download");
  EXPECT_EQ(all<LegendItem>(0).at(1)->accessibleName(), "Upload");
  EXPECT_EQ(range(1).geometry().left() - range(0).geometry().right(), 5); // four pixels between
}

TEST_F(DetailWindowTest, ChangesNoNumberWithItsRange) {
  sampler.snapshots.set(samples({1'000, 2'000'000, 4'000}));
  open();
  const auto before = cards();
  const QImage chart = picture(only<BandwidthChart>(0));
  range(2).click();
  Panel::settle();
  EXPECT_EQ(chosenRange(), "24h");
  EXPECT_EQ(view->timeRange(), DetailWindowView::TimeRange::twentyFourHour);
  EXPECT_EQ(cards(), before);
  EXPECT_EQ(difference(chart, picture(only<BandwidthChart>(0))).pixels, 0);
}

TEST_F(DetailWindowTest, KeepsTheRangeWhileItIsOpen) {
  open();
  range(3).click();
  tabs().setCurrentIndex(2);
  tabs().setCurrentIndex(0);
  EXPECT_EQ(chosenRange(), "7d");
  open();
  EXPECT_EQ(chosenRange(), "1h");
  EXPECT_EQ(view->selectedTab(), 0);
}

TEST_F(DetailWindowTest, PreviewsFourProgramsAtTheMost) {
  const Texts names = {"a", "b", "c", "d", "e", "f", "g"};
  for (std::size_t count = 0; count <= names.size(); ++count) {
    tracker.processes.set(programs(Texts(names.begin(), names.begin() + std::ptrdiff_t(count))));
    open();
    EXPECT_EQ(only<ProcessListView>(0).rows().size(), std::min<std::size_t>(count, 4));
    EXPECT_EQ(only<ProcessListView>(1).rows().size(), count);
  }
}

TEST_F(DetailWindowTest, SaysThatNoProgramUsesTheNetwork) {
  open(1);
  EXPECT_EQ(only<TextLine>(1).text(), "Active Processes");
  TextLine& hint = *all<TextLine>(1).at(1);
  EXPECT_EQ(hint.text(), "No active network processes detected.");
  EXPECT_TRUE(hint.isVisible());
  EXPECT_FALSE(only<ProcessListView>(1).isVisible());
  tracker.processes.set(programs({"curl"}));
  EXPECT_FALSE(hint.isVisible());
  EXPECT_TRUE(only<ProcessListView>(1).isVisible());
}

TEST_F(DetailWindowTest, KeepsItsPlaceWhenValuesArrive) {
  sampler.snapshots.set(samples({1, 2, 3}));
  tracker.processes.set(programs({"a", "b", "c", "d"}));
  open();
  pane(0).verticalScrollBar()->setValue(90);
  sampler.snapshots.set(samples({1, 2, 3, 4'000'000'000}));
  sampler.currentDownloadBytesPerSec.set(4'000'000'000);
  tracker.processes.set(programs({"e", "f", "g", "h"}));
  Panel::settle();
  EXPECT_EQ(pane(0).verticalScrollBar()->value(), 90);
  tabs().setCurrentIndex(3);
  tabs().setCurrentIndex(0);
  EXPECT_EQ(pane(0).verticalScrollBar()->value(), 90);
}

// The contrast ratio of WCAG 2.1.
double contrast(const QColor& one, const QColor& other) {
  const auto luminance = [](const QColor& color) {
    const auto linear = [](double channel) {
      return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
  };
  const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
  return (lighter + 0.05) / (darker + 0.05);
}

TEST_F(DetailWindowTest, TheHandleOfAScrollBarCanBeSeen) {
  tracker.processes.set(programs({"a", "b", "c", "d", "e", "f", "g", "h", "i", "j"}));
  open(1);
  QScrollBar& bar = *pane(1).verticalScrollBar();
  const QImage image = picture(bar);
  const QColor handle = image.pixelColor(bar.width() / 2, 20);
  const QColor ground = image.pixelColor(bar.width() / 2, bar.height() - 5);
  EXPECT_EQ(ground.rgb(), TWColor::surface.rgb());
  EXPECT_GE(contrast(handle, ground), 3.0) << handle.name().toStdString();
}

TEST_F(DetailWindowTest, ClosesWithTheKeyForIt) {
  open();
  view->activateWindow();
  QTest::keyClick(view.get(), Qt::Key_W, Qt::ControlModifier);
  EXPECT_FALSE(view->isVisible());
}

TEST_F(DetailWindowTest, HearsNothingOnceItIsGone) {
  open();
  view.reset();
  sampler.snapshots.set(samples({1}));
  tracker.processes.set(programs({"a"}));
  speedTest.isRunning.set(true);
  monitor.isConnected.set(false);
}

} // namespace
} // namespace tidewell::test
