#include "support/ImageComparison.h"
#include "support/Panel.h"
#include "ui/charts/AxisCharts.h"
#include "ui/charts/Curves.h"
#include "ui/charts/ThroughputFigures.h"
#include "ui/charts/ValueAxis.h"
#include "ui/tokens/TWColor.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace tidewell::test {
namespace {

constexpr QRectF plot(10.0, 20.0, 300.0, 100.0);

Texts labels(const ValueAxis& axis) {
  return textsOf(axis.ticks(), [&](double tick) { return axis.label(tick, {}).toStdString(); });
}

TEST(ValueAxisTest, RunsFromZeroToARoundNumberInRoundSteps) {
  EXPECT_EQ(labels({67.0, 1.0}), (Texts{"0", "20", "40", "60", "80"}));
  EXPECT_EQ(labels({50.0, 1.0}), (Texts{"0", "10", "20", "30", "40", "50"}));
  EXPECT_EQ(labels({3.0, 1.0}), (Texts{"0", "1", "2", "3"}));
  EXPECT_EQ(labels({0.9, 0.1}), (Texts{"0", "0.2", "0.4", "0.6", "0.8", "1.0"}));
}

TEST(ValueAxisTest, IsNeverLowerThanItsLeastTop) {
  EXPECT_EQ(labels({0.0, 0.1}), (Texts{"0", "0.02", "0.04", "0.06", "0.08", "0.10"}));
  EXPECT_EQ(labels({0.3, 1.0}), (Texts{"0", "0.2", "0.4", "0.6", "0.8", "1.0"}));
}

TEST(ValueAxisTest, ShortensLargeNumbers) {
  EXPECT_EQ(labels({9'999.0, 1.0}), (Texts{"0", "2k", "4k", "6k", "8k", "10k"}));
  EXPECT_EQ(labels({8'000.0, 1.0}), (Texts{"0", "2000", "4000", "6000", "8000"}));
  EXPECT_EQ(labels({80'000.0, 1.0}), (Texts{"0", "20k", "40k", "60k", "80k"}));
  EXPECT_EQ(labels({1.2e6, 1.0}), (Texts{"0", "0.5M", "1.0M", "1.5M"}));
  EXPECT_EQ(labels({7.4e13, 1.0}), (Texts{"0", "20T", "40T", "60T", "80T"}));
}

TEST(ValueAxisTest, ChangesTheUnitOfLargeNumbersIfThereIsALargerOne) {
  const QStringList units = {"Mbps", "Gbps"};
  const auto top = [&](double largest) {
    const ValueAxis axis(largest, 1.0);
    return axis.label(axis.top(), units) + ' ' + axis.unit(units);
  };
  EXPECT_EQ(top(940.0), "1000 Mbps");
  EXPECT_EQ(top(80'000.0), "80 Gbps");
  EXPECT_EQ(top(1.2e6), "1.5M Mbps") << "no larger unit is known";
}

TEST(ValueAxisTest, HasFewShortLabelsThatAllDiffer) {
  for (double largest = 1e-3; largest < 1e14; largest *= 1.07) {
    const ValueAxis axis(largest, 1e-3);
    EXPECT_GE(axis.top(), largest * (1.0 - 1e-6));
    EXPECT_LE(axis.top(), largest * 2.001) << "at least half of the height is used";
    EXPECT_LE(axis.ticks().size(), 6U) << largest;
    const Texts texts = labels(axis);
    for (std::size_t index = 0; index < texts.size(); ++index) {
      EXPECT_LE(texts[index].size(), largest < 0.1 ? 6U : 4U) << largest;
      EXPECT_TRUE(index == 0 || texts[index] != texts[index - 1]) << largest;
    }
  }
}

TEST(ValueAxisTest, PlacesValuesBetweenItsEnds) {
  const ValueAxis axis(80.0, 1.0);
  EXPECT_DOUBLE_EQ(axis.yOf(0.0, plot), plot.bottom());
  EXPECT_DOUBLE_EQ(axis.yOf(40.0, plot), plot.center().y());
  EXPECT_DOUBLE_EQ(axis.yOf(80.0, plot), plot.top());
  EXPECT_DOUBLE_EQ(axis.yOf(-5.0, plot), plot.bottom());
  EXPECT_DOUBLE_EQ(axis.yOf(1e300, plot), plot.top());
}

TEST(ChartCurveTest, PlacesValuesByTheirPositionInTheList) {
  const ChartCurve curve({0.0, 10.0, 20.0, 5.0}, {20.0, 1.0}, plot);
  ASSERT_EQ(curve.pieces().size(), 1U);
  const QPolygonF expected{{10.0, 120.0}, {110.0, 70.0}, {210.0, 20.0}, {310.0, 95.0}};
  EXPECT_EQ(curve.pieces()[0], expected);
}

TEST(ChartCurveTest, IsInterruptedByWhatIsNoNumber) {
  const ChartCurve curve({nan, 1.0, 2.0, infinite, 3.0, -infinite, 1e300}, {4.0, 1.0}, plot);
  ASSERT_EQ(curve.pieces().size(), 2U);
  EXPECT_EQ(curve.pieces()[0].size(), 2);
  EXPECT_EQ(curve.pieces()[1].size(), 1);
  EXPECT_DOUBLE_EQ(curve.pieces()[1][0].x(), 10.0 + 300.0 * 4.0 / 6.0);
}

TEST(ChartCurveTest, ThinsManyValuesToWhatCanBeSeen) {
  std::vector<double> values(50'000, 1.0);
  values[20'000] = 80.0;
  values[30'000] = 0.0;
  const ValueAxis axis(80.0, 1.0);
  const ChartCurve curve(values, axis, plot);
  ASSERT_EQ(curve.pieces().size(), 1U);
  const QPolygonF& points = curve.pieces().front();
  EXPECT_LE(points.size(), 4 * 2 * 301);
  EXPECT_DOUBLE_EQ(points.boundingRect().top(), plot.top()) << "the peak is there";
  EXPECT_DOUBLE_EQ(points.boundingRect().bottom(), plot.bottom()) << "and the gap";
  EXPECT_TRUE(std::ranges::is_sorted(points, {}, &QPointF::x));
}

TEST(ChartCurveTest, KeepsTheDotOfOneValueInsideThePlot) {
  QImage image(400, 200, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  {
    QPainter painter(&image);
    ChartCurve({40.0}, ValueAxis(80.0, 1.0), plot).draw(painter, TWColor::accent, 2.0);
  }
  const auto isInk = [](const QColor& pixel) { return pixel.alpha() > 0; };
  EXPECT_EQ(pixelsWhere(image, QRect(0, 0, 10, 200), isInk), 0);
  EXPECT_GT(pixelsWhere(image, QRect(10, 0, 8, 200), isInk), 20);
}

TEST(ChartCurveTest, TakesItsScaleFromWhatCanBeDrawn) {
  EXPECT_DOUBLE_EQ(ChartCurve::largest({1.0, nan, 7.0, infinite, 1e300}), 7.0);
  EXPECT_DOUBLE_EQ(ChartCurve::largest({nan, -3.0}), 0.0);
  EXPECT_DOUBLE_EQ(ChartCurve::largest({}), 0.0);
}

template <class Chart> QImage chartPicture(const SnapshotList& snapshots) {
  Chart chart;
  chart.setSnapshots(snapshots);
  chart.resize(632, chart.sizeHint().height());
  return picture(chart);
}

// Counts the pixels of a colour that nothing else has.
int pixelsOf(const QImage& image, const QColor& color) {
  return pixelsWhere(image, image.rect(),
                     [&](const QColor& pixel) { return pixel.name() == color.name(); });
}

// 300 samples of 80 Mbps down and 40 Mbps up.
void showSteady(BandwidthChart& chart) {
  chart.setSnapshots(samples(std::vector<std::int64_t>(300, 10'000'000)));
  chart.resize(632, 200);
}

TEST(BandwidthChartTest, IsEmptyWithoutSamplesButForItsGrid) {
  const QImage image = chartPicture<BandwidthChart>({});
  EXPECT_EQ(image.height(), 200);
  EXPECT_EQ(pixelsOf(image, TWColor::accent), 0);
  EXPECT_EQ(pixelsOf(image, TWColor::cyan), 0);
  EXPECT_GT(pixelsOf(image, TWColor::borderSubtle), 6 * 500);
}

TEST(BandwidthChartTest, ShowsOneSampleAsTwoDotsAtTheLeft) {
  const QImage image = chartPicture<BandwidthChart>(samples({1'250'000}));
  EXPECT_GT(pixelsOf(image.copy(0, 0, 10, 200), TWColor::accent), 8);
  EXPECT_GT(pixelsOf(image.copy(0, 0, 10, 200), TWColor::cyan), 5);
  EXPECT_EQ(pixelsOf(image.copy(10, 0, 622, 200), TWColor::accent), 0);
}

TEST(BandwidthChartTest, DrawsMegabitsWithTheUploadOverTheDownload) {
  BandwidthChart chart;
  showSteady(chart);
  EXPECT_DOUBLE_EQ(chart.axis().top(), 80.0);
  const QImage image = picture(chart);
  const int top = static_cast<int>(chart.plot().top());
  const int middle = static_cast<int>(chart.plot().center().y());
  const auto columnsNear = [&](int y, const std::function<bool(const QColor&)>& isThere) {
    int columns = 0;
    for (int x = 100; x < 400; ++x) {
      columns += pixelsWhere(image, QRect(x, y - 2, 1, 5), isThere) > 0 ? 1 : 0;
    }
    return columns;
  };
  const auto isDownload = [](const QColor& pixel) {
    return pixel.name() == TWColor::accent.name();
  };
  const auto isUpload = [](const QColor& pixel) {
    return pixel.alpha() > 180 && pixel.green() > 150 && pixel.red() < 40;
  };
  EXPECT_GT(columnsNear(top, isDownload), 290);
  EXPECT_GT(columnsNear(middle, isUpload), 290);
  EXPECT_EQ(columnsNear(middle, isDownload), 0);
  EXPECT_EQ(columnsNear(top, isUpload), 0);
}

TEST(BandwidthChartTest, FillsTheAreaFromFaintToNothing) {
  BandwidthChart chart;
  showSteady(chart);
  const QImage image = picture(chart);
  const int top = static_cast<int>(chart.plot().top()) + 4;
  const int bottom = static_cast<int>(chart.plot().bottom()) - 4;
  EXPECT_NEAR(image.pixelColor(200, top).alphaF(), 0.25, 0.02);
  EXPECT_NEAR(image.pixelColor(200, bottom).alphaF(), 0.0, 0.02);
  EXPECT_EQ(image.pixelColor(200, top).alpha(), image.pixelColor(500, top).alpha());
}

TEST(BandwidthChartTest, HoldsStandstillAndTenGigabytesASecond) {
  BandwidthChart chart;
  chart.setSnapshots(samples(std::vector<std::int64_t>(300, 0)));
  EXPECT_DOUBLE_EQ(chart.axis().top(), 0.1);
  chart.setSnapshots(samples(std::vector<std::int64_t>(300, 10'000'000'000)));
  EXPECT_DOUBLE_EQ(chart.axis().top(), 80'000.0);
  EXPECT_EQ(chart.axis().label(80'000.0, {"Mbps", "Gbps"}), "80");
  EXPECT_EQ(chart.axis().unit({"Mbps", "Gbps"}), "Gbps");
}

SnapshotList latencies(const std::vector<double>& values) {
  SnapshotList list;
  for (const double value : values) {
    list.push_back(std::make_shared<const NetworkSnapshot>(1e9, 0, 0, value, 0.0, 0.0));
  }
  return list;
}

TEST(LatencyChartTest, DrawsMillisecondsInYellow) {
  const QImage image = chartPicture<LatencyChart>(latencies(std::vector<double>(300, 20.0)));
  EXPECT_EQ(image.height(), 150);
  EXPECT_GT(pixelsOf(image, TWColor::yellow), 500);
}

TEST(LatencyChartTest, LeavesOutWhatIsNoNumber) {
  EXPECT_EQ(
      pixelsOf(chartPicture<LatencyChart>(latencies({nan, infinite, 1e300})), TWColor::yellow), 0);
  LatencyChart chart;
  chart.setSnapshots(latencies({20.0, nan}));
  EXPECT_DOUBLE_EQ(chart.axis().top(), 20.0);
  EXPECT_EQ(chart.accessibleDescription(),
            "Current unknown ms, peak 20 ms. Scale from 0 to 20 ms.");
}

TEST(ThroughputTotalsTest, AveragesAllSamples) {
  EXPECT_NEAR(averageDownloadBytes(samples({1'000, 2'000, 4'000})), 2'333.333, 0.001);
  EXPECT_EQ(averageDownloadBytes({}), 0.0);
}

TEST(ThroughputTotalsTest, FindsThePeak) {
  EXPECT_EQ(peakDownloadBytes(samples({1'000, 4'000, 2'000})), 4'000);
  EXPECT_EQ(peakDownloadBytes({}), 0);
}

TEST(ThroughputTotalsTest, AddsTheRatesOfBothDirectionsOncePerSample) {
  // The upload is half of each rate: 3 x (200 + 100) MB.
  EXPECT_EQ(totalTransferred(samples({200'000'000, 200'000'000, 200'000'000})), "900 MB");
  EXPECT_EQ(totalTransferred({}), "0 MB");
}

TEST(ThroughputTotalsDeathTest, AbortsWhenASumDoesNotFit) {
  const auto half = std::int64_t{1} << 62;
  EXPECT_DEATH(static_cast<void>(averageDownloadBytes(samples({half, half}))), "overflow");
  EXPECT_DEATH(static_cast<void>(totalTransferred(samples({half, half}))), "overflow");
}

} // namespace
} // namespace tidewell::test
