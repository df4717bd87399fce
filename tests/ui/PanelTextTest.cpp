#include "support/Panel.h"
#include "ui/components/AccessibleWidgets.h"
#include "ui/components/ShownText.h"
#include "ui/components/TextLine.h"
#include "ui/tokens/TWColor.h"

#include <gtest/gtest.h>

#include <QLocale>

#include <limits>

namespace tidewell::test {
namespace {

class PanelTextTest : public testing::Test, protected Panel {
protected:
  [[nodiscard]] QString line(int index) const {
    return view->findChildren<TextLine*>().at(index)->text();
  }
  // The horizontal divider.
  [[nodiscard]] Divider& divider() const {
    return *view->findChild<Divider*>({}, Qt::FindDirectChildrenOnly);
  }
  [[nodiscard]] Texts shown() const {
    return {textOf(cell(0)), textOf(cell(1)), textOf(cell(2)), textOf(cell(3))};
  }
};

TEST_F(PanelTextTest, IsAsWideAsItShouldBe) {
  open();
  EXPECT_EQ(view->width(), 340);
  speedTest.isRunning.set(true);
  monitor.connectionInfo.mutate([](ConnectionInfo& info) { info.dns = std::string(500, '1'); });
  sampler.currentDownloadBytesPerSec.set(std::numeric_limits<std::int64_t>::max());
  settle();
  EXPECT_EQ(view->width(), 340);
}

TEST_F(PanelTextTest, ShowsTheDownloadInBothUnits) {
  sampler.currentDownloadBytesPerSec.set(1'234'567);
  open();
  EXPECT_EQ(line(0), "CURRENT THROUGHPUT");
  EXPECT_EQ(line(1), "1.2 MB/s");
  EXPECT_EQ(line(2), "9.88 Mbps");
}

TEST_F(PanelTextTest, ShowsTheFourFigures) {
  sampler.currentUploadBytesPerSec.set(12'000);
  sampler.latencyMs.set(23.6);
  sampler.jitterMs.set(3.14);
  open();
  EXPECT_EQ(shown(),
            (Texts{"Upload|12 KB/s|", "Latency|24|ms", "Jitter|3.1|ms", "Packet Loss|0.0|%"}));
}

TEST_F(PanelTextTest, ColoursOnlyThePacketLoss) {
  open();
  for (const auto& [loss, color] :
       std::vector<std::pair<double, QColor>>{{0.0, TWColor::green},
                                              {1.0, TWColor::green},
                                              {1.01, TWColor::yellow},
                                              {100.0, TWColor::yellow}}) {
    sampler.packetLossPercent.set(loss);
    EXPECT_EQ(cell(3).figure().valueColor, color) << loss;
  }
  sampler.latencyMs.set(900.0);
  sampler.jitterMs.set(900.0);
  EXPECT_EQ(cell(1).figure().valueColor, TWColor::text);
  EXPECT_EQ(cell(2).figure().valueColor, TWColor::text);
}

TEST_F(PanelTextTest, ShowsWhatIsNotKnownAsNotKnown) {
  sampler.latencyMs.set(nan);
  sampler.jitterMs.set(infinite);
  open();
  EXPECT_EQ(textOf(cell(1)), "Latency|--|ms");
  EXPECT_EQ(textOf(cell(2)), "Jitter|--|ms");
  EXPECT_EQ(cell(1).accessibleName(), "Latency unknown");
}

TEST_F(PanelTextTest, ShowsTheStatusOfTheMoment) {
  open();
  auto& badge = only<StatusBadge>();
  EXPECT_EQ(badge.text(), "Excellent");
  sampler.latencyMs.set(50.1);
  EXPECT_EQ(badge.text(), "Good");
  sampler.packetLossPercent.set(5.1);
  EXPECT_EQ(badge.text(), "High Latency");
  sampler.isConnected = false;
  monitor.isConnected.set(false);
  EXPECT_EQ(badge.text(), "No Internet");
}

TEST_F(PanelTextTest, ShowsTheDetailsAsTheyAreDelivered) {
  open();
  const std::vector<std::pair<const char*, const char*>> defaults = {{"Network", "Unknown"},
                                                                     {"Interface", "en0"},
                                                                     {"Local IP", "--"},
                                                                     {"Public IP", "--"},
                                                                     {"DNS", "--"}};
  for (int index = 0; index < 5; ++index) {
    EXPECT_EQ(row(index).key(), defaults.at(static_cast<std::size_t>(index)).first);
    EXPECT_EQ(row(index).value(), defaults.at(static_cast<std::size_t>(index)).second);
  }
  monitor.connectionInfo.mutate([](ConnectionInfo& info) { info.networkName = "Caf\u00E9\n"; });
  EXPECT_EQ(row(0).value(), QString("Caf\u00E9\uFFFD"));
}

TEST_F(PanelTextTest, KeepsNoRoomForASpeedTestThatNeverRan) {
  open();
  EXPECT_FALSE(only<SpeedTestStrip>().isVisible());
  const int bottomOfRows = row(4).mapTo(view.get(), QPoint(0, row(4).height())).y() + 12;
  EXPECT_EQ(divider().y(), bottomOfRows);
  EXPECT_EQ(divider().height(), 1);
}

TEST_F(PanelTextTest, SaysThatASpeedTestRuns) {
  open();
  const int before = view->height();
  speedTest.isRunning.set(true);
  settle();
  EXPECT_TRUE(only<RunningLine>().isVisible());
  EXPECT_FALSE(only<ResultLine>().isVisible());
  EXPECT_EQ(only<RunningLine>().accessibleName(), "Running speed test...");
  EXPECT_EQ(view->height(), before + only<RunningLine>().height());
  EXPECT_EQ(button(0).text(), "Testing...");
  EXPECT_EQ(button(0).face(), Icon::hourglass);
  EXPECT_TRUE(button(0).isEnabled());
}

TEST_F(PanelTextTest, CallsAFailedTestFailedAndKeepsTheLastMeasurement) {
  open();
  speedTest.lastResult.set(SpeedTestResult{1'700'000'600.0, 0.0, 0.0, 0});
  speedTest.failure.set("the server cannot be reached");
  settle();
  EXPECT_TRUE(only<FailureLine>().isVisible());
  EXPECT_EQ(only<FailureLine>().accessibleName(),
            "Speed Test Failed: The server cannot be reached");
  EXPECT_FALSE(only<ResultLine>().isVisible()) << "nothing was ever measured";

  speedTest.lastMeasured.set(SpeedTestResult{1'700'000'000.0, 245.6, 19.2, 812});
  settle();
  EXPECT_TRUE(only<ResultLine>().isVisible());
  EXPECT_EQ(only<ResultLine>().figures(), QString("\u2193246 Mbps  \u219119 Mbps"));

  speedTest.isRunning.set(true);
  EXPECT_FALSE(only<FailureLine>().isVisible());
  EXPECT_FALSE(only<ResultLine>().isVisible());

  speedTest.lastResult.set(std::nullopt);
  speedTest.failure.set("the measuring program could not be started");
  speedTest.isRunning.set(false);
  settle();
  EXPECT_TRUE(only<FailureLine>().isVisible());
  EXPECT_TRUE(only<ResultLine>().isVisible());
}

TEST_F(PanelTextTest, ShowsTheResultOnceTheTestIsOver) {
  open();
  const int before = view->height();
  speedTest.isRunning.set(true);
  speedTest.lastResult.set(SpeedTestResult{1'700'000'000.0, 245.6, 19.2, 812});
  EXPECT_FALSE(only<ResultLine>().isVisible());
  speedTest.isRunning.set(false);
  settle();
  EXPECT_TRUE(only<ResultLine>().isVisible());
  EXPECT_EQ(only<ResultLine>().figures(), QString("\u2193246 Mbps  \u219119 Mbps"));
  EXPECT_EQ(button(0).text(), "Speed Test");
  EXPECT_EQ(button(0).face(), Icon::bolt);
  speedTest.lastResult.set(std::nullopt);
  settle();
  EXPECT_EQ(view->height(), before);
}

TEST_F(PanelTextTest, TellsTheTimeInTheUsersLocale) {
  EXPECT_EQ(timeOfDay(1'700'000'000.0), "22:13");
  QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
  EXPECT_EQ(timeOfDay(1'700'000'000.0).simplified().replace(QChar(0x202F), ' '), "10:13 PM");
  QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedKingdom));
}

TEST_F(PanelTextTest, TellsNoTimeThatNoCalendarHas) {
  for (const double seconds : {nan, infinite, 1e300, -1e300}) {
    EXPECT_EQ(timeOfDay(seconds), "");
  }
}

TEST_F(PanelTextTest, FitsTheLargestRatesWithoutMovingAnything) {
  open();
  const int before = view->height();
  const QRect badge = only<StatusBadge>().geometry();
  sampler.currentDownloadBytesPerSec.set(std::int64_t{1} << 62);
  sampler.currentUploadBytesPerSec.set(std::int64_t{1} << 62);
  settle();
  EXPECT_EQ(line(1), "4611686018.4 GB/s");
  for (const QWidget* widget : view->findChildren<QWidget*>()) {
    EXPECT_EQ(widget->toolTip(), "") << "nothing is cut";
  }
  EXPECT_EQ(view->height(), before);
  EXPECT_EQ(only<StatusBadge>().geometry(), badge);
}

TEST_F(PanelTextTest, PadsItsSections) {
  open();
  const auto top = [this](const QWidget& widget) { return widget.mapTo(view.get(), QPoint()).y(); };
  EXPECT_EQ(top(*view->findChildren<TextLine*>().at(0)), 24);
  auto& badge = only<StatusBadge>();
  EXPECT_EQ(top(badge) + badge.height() + 16, top(cell(0)));
  EXPECT_EQ(cell(0).mapTo(view.get(), QPoint()).x(), 12);
  EXPECT_EQ(cell(1).mapTo(view.get(), QPoint(cell(1).width(), 0)).x(), 328);
  EXPECT_EQ(cell(1).geometry().left() - cell(0).geometry().right(), 2); // one pixel between them
  EXPECT_EQ(top(cell(2)), top(cell(0)) + cell(0).height() + 1);
  auto& graph = only<MiniGraphView>();
  EXPECT_EQ(top(graph), top(cell(2)) + cell(2).height() + 16);
  EXPECT_EQ(graph.mapTo(view.get(), QPoint()).x(), 20);
  EXPECT_EQ(graph.width(), 300);
  EXPECT_EQ(top(row(0)), top(graph) + graph.height() + 16 + 12);
  EXPECT_EQ(row(0).width(), 300);
  EXPECT_EQ(top(button(0)), top(divider()) + 1);
  EXPECT_EQ(top(button(0)) + button(0).height(), view->height());
}

TEST_F(PanelTextTest, GivesItsButtonsEqualWidths) {
  open();
  int total = 0;
  for (int index = 0; index < 5; ++index) {
    EXPECT_NEAR(button(index).width(), 67.2, 1.0);
    total += button(index).width();
  }
  EXPECT_EQ(total, 340 - 4);
}

} // namespace
} // namespace tidewell::test
