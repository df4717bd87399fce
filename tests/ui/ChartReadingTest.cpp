#include "support/ImageComparison.h"
#include "support/Panel.h"
#include "ui/charts/AxisCharts.h"
#include "ui/tokens/TWColor.h"

#include <gtest/gtest.h>

#include <QPainter>
#include <QtTest/QTest>

#include <cmath>

namespace tidewell::test {
namespace {

constexpr QSize chartSize(640, 200);

// Eleven samples, a minute apart.
SnapshotList minutes() {
  SnapshotList list;
  for (int index = 0; index <= 10; ++index) {
    list.push_back(std::make_shared<const NetworkSnapshot>(
        1.7e9 + 60.0 * index, 1'000'000 * index, 200'000 * index, 10.0 * index, 1.0, 0.0));
  }
  return list;
}

class ChartReadingTest : public testing::Test {
protected:
  void SetUp() override {
    for (AxisChart* chart : charts()) {
      chart->resize(chartSize);
    }
    show(minutes());
  }

  std::vector<AxisChart*> charts() { return {&bandwidth, &latency}; }
  void show(const SnapshotList& samples) {
    bandwidth.setSnapshots(samples);
    latency.setSnapshots(samples);
  }

  static void pointAt(QWidget& chart, double x) {
    QMouseEvent event(QEvent::MouseMove, QPointF(x, 60.0), chart.mapToGlobal(QPointF(x, 60.0)),
                      Qt::NoButton, {}, {});
    QCoreApplication::sendEvent(&chart, &event);
  }
  static void leave(QWidget& chart) {
    QEvent event(QEvent::Leave);
    QCoreApplication::sendEvent(&chart, &event);
  }
  // The part of the plot at this share of its width.
  static double across(const AxisChart& chart, double share) {
    return chart.plot().left() + share * chart.plot().width();
  }
  static std::string spoken(const QWidget& chart) {
    return chart.accessibleDescription().toStdString();
  }

  BandwidthChart bandwidth;
  LatencyChart latency;
};

// The box of the pixels that differ.
QRect changed(const QImage& before, const QImage& after) {
  const QImage found = difference(before, after).picture;
  QRect box;
  for (int y = 0; y < found.height(); ++y) {
    for (int x = 0; x < found.width(); ++x) {
      if (found.pixelColor(x, y) == QColor(Qt::white)) {
        box |= QRect(x, y, 1, 1);
      }
    }
  }
  return box;
}

TEST_F(ChartReadingTest, TellsTimeAndFiguresOfTheNearestSample) {
  pointAt(bandwidth, across(bandwidth, 0.32));
  pointAt(latency, across(latency, 0.28));
  EXPECT_TRUE(spoken(bandwidth).starts_with(
      "At the pointer: 22:16, download 3.0 MB/s, upload 600 KB/s. Download: current 10.0 MB/s"))
      << spoken(bandwidth);
  EXPECT_TRUE(spoken(latency).starts_with(
      "At the pointer: 22:16, 30 ms, download 3.0 MB/s, upload 600 KB/s. Current 100 ms"))
      << spoken(latency);
}

TEST_F(ChartReadingTest, ShowsNothingWithoutThePointer) {
  for (AxisChart* chart : charts()) {
    const QImage before = picture(*chart);
    const std::string words = spoken(*chart);
    pointAt(*chart, across(*chart, 0.5));
    EXPECT_NE(picture(*chart), before);
    EXPECT_NE(spoken(*chart), words);
    leave(*chart);
    EXPECT_EQ(picture(*chart), before);
    EXPECT_EQ(spoken(*chart), words);
    pointAt(*chart, across(*chart, 0.5));
    pointAt(*chart, chart->plot().right() + 20.0);
    EXPECT_EQ(picture(*chart), before) << "the labels are no samples";
    pointAt(*chart, across(*chart, 0.5));
    QWheelEvent turn({60.0, 60.0}, chart->mapToGlobal(QPointF(60.0, 60.0)), {}, {0, -120}, {}, {},
                     Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(chart, &turn);
    EXPECT_EQ(picture(*chart), before) << "the page has scrolled";
    EXPECT_FALSE(turn.isAccepted());
    pointAt(*chart, across(*chart, 0.5));
    chart->show();
    chart->hide();
    EXPECT_EQ(picture(*chart), before);
  }
}

TEST_F(ChartReadingTest, StaysInsideThePlot) {
  for (AxisChart* chart : charts()) {
    for (const int width : {640, 150}) {
      chart->resize(width, chartSize.height());
      const QImage before = picture(*chart);
      for (const double share : {0.0, 0.01, 0.3, 0.7, 0.99, 1.0}) {
        pointAt(*chart, across(*chart, share));
        const QRect box = changed(before, picture(*chart));
        EXPECT_TRUE(chart->plot().toRect().contains(box)) << width << ' ' << share;
        EXPECT_EQ(box.top(), chart->plot().toRect().top());
        EXPECT_GT(box.width(), 40);
        EXPECT_GE(box.height(), chart->plot().toRect().height() - 1);
      }
      leave(*chart);
    }
  }
}

// The device pixels of a row in which a chart without curves shows the line, and no other colour.
std::vector<int> lineColumns(AxisChart& chart, double scale) {
  QImage image((QSizeF(chartSize) * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(scale);
  image.fill(TWColor::surface);
  QPainter painter(&image);
  chart.render(&painter, {}, {}, QWidget::DrawChildren);
  painter.end();
  const int y = static_cast<int>(scale * 80.0);
  std::vector<int> columns;
  for (int x = 0; x < static_cast<int>(scale * chart.plot().right()); ++x) {
    const QColor color = image.pixelColor(x, y);
    if (color.rgb() != TWColor::surface.rgb()) {
      EXPECT_EQ(color.rgb(), TWColor::textTertiary.rgb()) << scale << ' ' << x;
      columns.push_back(x);
    }
  }
  return columns;
}

TEST_F(ChartReadingTest, DrawsTheLineOnWholeDevicePixelsAtEveryScale) {
  SnapshotList idle;
  for (int index = 0; index < 8; ++index) {
    idle.push_back(std::make_shared<const NetworkSnapshot>(1.7e9, 0, 0, 0.0, 0.0, 0.0));
  }
  show(idle);
  for (const double scale : {1.0, 1.25, 1.5, 1.75, 2.0}) {
    for (int index = 0; index < 8; ++index) {
      pointAt(latency, across(latency, index / 7.0));
      EXPECT_EQ(lineColumns(latency, scale).size(), std::floor(scale)) << scale << ' ' << index;
    }
  }
}

TEST_F(ChartReadingTest, FollowsTheSamplesUnderARestingPointer) {
  pointAt(bandwidth, across(bandwidth, 1.0));
  EXPECT_NE(spoken(bandwidth).find("At the pointer: 22:23,"), std::string::npos);
  SnapshotList more = minutes();
  more.pop_back();
  bandwidth.setSnapshots(more);
  EXPECT_NE(spoken(bandwidth).find("At the pointer: 22:22,"), std::string::npos);
  const QImage shown = picture(bandwidth);
  bandwidth.setSnapshots({});
  EXPECT_EQ(spoken(bandwidth), "No samples yet");
  EXPECT_NE(picture(bandwidth), shown);
}

TEST_F(ChartReadingTest, HoldsOneSampleAndAbsurdOnes) {
  show({std::make_shared<const NetworkSnapshot>(nan, std::int64_t{1} << 62, -1, infinite, nan,
                                                nan)});
  for (AxisChart* chart : charts()) {
    for (const QSize extent : {chartSize, QSize(1, 1), QSize(0, 0)}) {
      chart->resize(extent);
      for (const double x : {0.0, 50.0, 600.0}) {
        pointAt(*chart, x);
        static_cast<void>(picture(*chart));
      }
    }
  }
  EXPECT_EQ(spoken(bandwidth).find("At the pointer"), std::string::npos) << "there is no plot";
}

TEST_F(ChartReadingTest, ChartsTellTheirScaleAndLastValue) {
  EXPECT_EQ(spoken(bandwidth), "Download: current 10.0 MB/s, average 5.0 MB/s, peak 10.0 MB/s. "
                               "Upload: current 2.0 MB/s, average 1.0 MB/s, peak 2.0 MB/s. "
                               "Scale from 0 to 80 Mbps.");
  EXPECT_EQ(spoken(latency), "Current 100 ms, peak 100 ms. Scale from 0 to 100 ms.");
  MiniGraphView graph;
  graph.setSnapshots(minutes());
  EXPECT_EQ(spoken(graph), spoken(bandwidth).replace(spoken(bandwidth).find("80 "), 3, "80.0 "));
}

} // namespace
} // namespace tidewell::test
