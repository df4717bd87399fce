#include "support/ImageComparison.h"
#include "support/Panel.h"
#include "ui/charts/Curves.h"
#include "ui/charts/ThroughputFigures.h"
#include "ui/tokens/TWColor.h"

#include <gtest/gtest.h>

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <limits>

namespace tidewell::test {
namespace {

constexpr QRectF plot(10.0, 20.0, 299.0, 50.0);

// As wide as in the panel.
constexpr int graphWidth = 300;

QImage graphPicture(const SnapshotList& snapshots) {
  MiniGraphView view;
  view.resize(graphWidth, view.sizeHint().height());
  view.setSnapshots(snapshots);
  return picture(view);
}

QRect chartArea() {
  MiniGraphView view;
  view.resize(graphWidth, view.sizeHint().height());
  return view.chart();
}

bool hasInk(const QImage& image, const QRect& box) {
  return pixelsWhere(image, box, [](const QColor& pixel) {
           return pixel.name() != TWColor::surface2.name();
         }) > 0;
}

TEST(GraphCurvesTest, PlacesSamplesEvenlyWithTheOldestAtTheLeft) {
  const GraphCurves curves(samples(std::vector<std::int64_t>(300, 1'000'000)), plot);
  ASSERT_EQ(curves.download.size(), 300);
  ASSERT_EQ(curves.upload.size(), 300);
  EXPECT_DOUBLE_EQ(curves.download.first().x(), plot.left());
  EXPECT_NEAR(curves.download[100].x(), plot.left() + 100.0, 1e-9);
  EXPECT_NEAR(curves.download.last().x(), plot.right(), 1e-9);
}

TEST(GraphCurvesTest, IgnoresTheTimesOfTheSamples) {
  SnapshotList list = samples({1, 2});
  list.push_back(std::make_shared<const NetworkSnapshot>(2e9, 3, 1, 0.0, 0.0, 0.0));
  EXPECT_NEAR(GraphCurves(list, plot).download[1].x(), plot.center().x(), 1e-9);
}

TEST(GraphCurvesTest, DrawsARateAtItsMegabits) {
  EXPECT_DOUBLE_EQ(megabits(1'250'000), 10.0);
  const GraphCurves curves(samples({2'500'000, 1'250'000, 0}), plot); // 20, 10 and 0 Mbps
  EXPECT_DOUBLE_EQ(curves.download[0].y(), plot.top());
  EXPECT_DOUBLE_EQ(curves.download[1].y(), plot.center().y());
  EXPECT_DOUBLE_EQ(curves.download[2].y(), plot.bottom());
  EXPECT_DOUBLE_EQ(curves.upload[0].y(), plot.center().y());
}

TEST(GraphCurvesTest, SharesOneScaleBetweenBothDirections) {
  SnapshotList list = samples({1'000'000});
  list.push_back(std::make_shared<const NetworkSnapshot>(1e9, 0, 4'000'000, 0.0, 0.0, 0.0));
  EXPECT_DOUBLE_EQ(topOfScale(list), 32.0);
  const GraphCurves curves(list, plot);
  EXPECT_DOUBLE_EQ(curves.upload[1].y(), plot.top());
  EXPECT_DOUBLE_EQ(curves.download[0].y(), plot.bottom() - plot.height() / 4.0);
}

TEST(GraphCurvesTest, MakesNoHillOfAFewBytes) {
  const GraphCurves curves(samples({0, 100, 0}), plot); // its figure reads 0
  EXPECT_GT(curves.download[1].y(), plot.bottom() - 1.0);
}

TEST(GraphCurvesTest, LiesAtTheBottomWhileNothingFlows) {
  const GraphCurves curves(samples({0, 0, 0}), plot);
  for (const QPointF& point : curves.download + curves.upload) {
    EXPECT_DOUBLE_EQ(point.y(), plot.bottom());
  }
}

TEST(GraphCurvesTest, StaysFiniteAndInsideForEveryRateAndPlace) {
  const auto largest = std::numeric_limits<std::int64_t>::max();
  const auto smallest = std::numeric_limits<std::int64_t>::min();
  for (const SnapshotList& list : {samples({}), samples({largest}), samples({smallest, smallest}),
                                   samples({largest, smallest, 0, 1})}) {
    for (const QRectF& place : {plot, QRectF(), QRectF(0, 0, 0, 50), QRectF(0, 0, 50, 0)}) {
      const GraphCurves curves(list, place);
      EXPECT_EQ(curves.download.size(), static_cast<qsizetype>(list.size()));
      for (const QPointF& point : curves.download + curves.upload) {
        EXPECT_TRUE(std::isfinite(point.x()) && std::isfinite(point.y()));
        EXPECT_TRUE(place.adjusted(-1, -1, 1, 1).contains(point));
      }
    }
  }
}

TEST(MiniGraphViewTest, ShowsItsHeaderOverAnEmptyChart) {
  const QImage empty = graphPicture({});
  EXPECT_FALSE(hasInk(empty, chartArea().adjusted(2, 2, -2, -2)));
  EXPECT_TRUE(hasInk(empty, QRect(0, 0, 140, 16)));
  EXPECT_EQ(chartArea().height(), 60);
  EXPECT_EQ(chartArea().width(), 300);
}

TEST(MiniGraphViewTest, ShowsOneSampleAsAPoint) {
  const QImage one = graphPicture(samples({1'250'000}));
  const QRect chart = chartArea().adjusted(2, 2, -2, -2);
  EXPECT_TRUE(hasInk(one, QRect(chart.left(), chart.top(), 10, chart.height())));
  EXPECT_FALSE(hasInk(one, chart.adjusted(12, 0, 0, 0)));
}

TEST(MiniGraphViewTest, DrawsTheDownloadThroughAndTheUploadInDashes) {
  const QImage image = graphPicture(samples(std::vector<std::int64_t>(300, 1'000'000)));
  const QRect chart = chartArea();
  const auto columnsWhere = [&](int y, const std::function<bool(const QColor&)>& isThere) {
    return pixelsWhere(image, QRect(6, chart.top() + y, chart.width() - 13, 1), isThere);
  };
  // The upload is half of the download. The area between them is dark green.
  EXPECT_GT(columnsWhere(5, [](const QColor& pixel) { return pixel.green() > 180; }), 280);
  const int dashes = columnsWhere(30, [](const QColor& pixel) { return pixel.blue() > 110; });
  EXPECT_GT(dashes, 110);
  EXPECT_LT(dashes, 175);
}

// Compares curves drawn in pieces with curves drawn at once. Only the joints may differ.
class CurvePaintingTest : public testing::Test {
protected:
  template <class F> static QImage drawn(F&& draw) {
    QImage image(320, 80, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::black);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    draw(painter);
    return image;
  }
  static QPolygonF waves() {
    QPolygonF curve;
    for (int index = 0; index < 300; ++index) {
      curve << QPointF(10.0 + index * 299.0 / 300.0, 40.0 + 25.0 * std::sin(index / 9.0));
    }
    return curve;
  }
};

TEST_F(CurvePaintingTest, FillsWithoutSeams) {
  const QColor half(255, 255, 255, 128);
  const QImage pieces = drawn([&](QPainter& p) { fillBelow(p, waves(), 75.0, half); });
  const QImage whole = drawn([&](QPainter& p) {
    p.setPen(Qt::NoPen);
    p.setBrush(half);
    p.drawPolygon(waves() << QPointF(waves().last().x(), 75.0) << QPointF(10.0, 75.0));
  });
  EXPECT_EQ(difference(whole, pieces).pixels, 0);
}

TEST_F(CurvePaintingTest, CarriesDashesOnFromPieceToPiece) {
  QPen pen(Qt::white, 1.5, Qt::SolidLine, Qt::FlatCap, Qt::BevelJoin);
  pen.setDashPattern({2.0, 2.0});
  const QImage pieces = drawn([&](QPainter& p) { drawCurve(p, waves(), pen); });
  const QImage whole = drawn([&](QPainter& p) {
    p.setPen(pen);
    p.drawPolyline(waves());
  });
  EXPECT_LT(difference(whole, pieces).pixels, 60); // of several thousand; there are 29 joints
  EXPECT_GT(difference(whole, drawn([](QPainter&) {})).pixels, 700);
}

TEST_F(CurvePaintingTest, LeavesNoGapsInALine) {
  const QPen pen(Qt::white, 2.0, Qt::SolidLine, Qt::FlatCap, Qt::BevelJoin);
  const QImage line = drawn([&](QPainter& p) { drawCurve(p, waves(), pen); });
  for (int x = 12; x < 306; ++x) {
    int brightest = 0;
    for (int y = 0; y < line.height(); ++y) {
      brightest = std::max(brightest, qRed(line.pixel(x, y)));
    }
    EXPECT_GT(brightest, 200) << x;
  }
}

TEST_F(CurvePaintingTest, EndsWithOnePointOrNone) {
  drawn([](QPainter& p) {
    drawCurve(p, {}, QPen(Qt::white, 2.0));
    drawCurve(p, {{5.0, 5.0}}, QPen(Qt::white, 2.0));
    fillBelow(p, {{5.0, 5.0}}, 10.0, Qt::white);
  });
}

TEST(GraphSummaryTest, TellsCurrentAverageAndPeakOfBothDirections) {
  EXPECT_EQ(graphSummary(samples({2'000'000, 6'000'000, 1'000'000})).toStdString(),
            "Download: current 1.0 MB/s, average 3.0 MB/s, peak 6.0 MB/s. "
            "Upload: current 500 KB/s, average 1.5 MB/s, peak 3.0 MB/s.");
  EXPECT_EQ(graphSummary({}).toStdString(), "No samples yet");
}

TEST(GraphSummaryTest, HoldsForTheLargestRates) {
  const auto largest = std::numeric_limits<std::int64_t>::max();
  const QString summary = graphSummary(samples(std::vector<std::int64_t>(300, largest)));
  EXPECT_TRUE(summary.startsWith("Download: current 9223372036.9 GB/s, average 9223372036.9 GB/s"))
      << summary.toStdString();
}

} // namespace
} // namespace tidewell::test
