// What holds with any fonts. FontsTest runs these tests with other fonts, and without any.
#include "support/Details.h"
#include "support/ImageComparison.h"
#include "support/Preferences.h"
#include "ui/charts/AxisCharts.h"
#include "ui/components/FittedText.h"
#include "ui/tokens/TWColor.h"
#include "ui/tokens/TWFont.h"

#include <gtest/gtest.h>

#include <QAbstractScrollArea>
#include <QFontInfo>

#include <cmath>

namespace tidewell::test {
namespace {

QString repeated(const QString& piece, int length) {
  return piece.repeated(length / static_cast<int>(piece.size())) + u'.';
}

std::vector<QString> longNames() {
  return {repeated(QStringLiteral("W"), 10'000), repeated(QStringLiteral("a b "), 10'000),
          repeated(QStringLiteral("\u05D3\u05E4\u05D3\u05E4 "), 10'000),
          repeated(QStringLiteral("\U0001F469\u200D\U0001F680"), 10'000)};
}

TEST(WithAnyFontTest, TextThatIsCutEndsInAnEllipsisAndStaysInItsRoom) {
  for (const QString& name : longNames()) {
    for (const Qt::TextElideMode elide : {Qt::ElideRight, Qt::ElideMiddle}) {
      for (const double room : {30.0, 100.0, 240.0}) {
        const FittedText fitted(name, {.font = TWFont::body(), .color = {}, .elide = elide}, room);
        EXPECT_TRUE(fitted.isCut);
        EXPECT_TRUE(fitted.text.contains(QChar(0x2026))) << fitted.text.toStdString();
        EXPECT_LE(fitted.width, room + 1.0);
      }
    }
  }
}

TEST(WithAnyFontTest, LabelsOfAChartsAxisFitIntoTheirColumn) {
  const TextStyle style{TWFont::monoTiny(), {}};
  for (double largest = 10'000.0; largest < 1e13; largest *= 1.37) {
    BandwidthChart chart;
    chart.resize(632, chart.sizeHint().height());
    chart.setSnapshots(samples({0, static_cast<std::int64_t>(largest)}));
    const QStringList units = {"Mbps", "Gbps", "Tbps", "Pbps"};
    const QString top =
        chart.axis().label(chart.axis().ticks().back(), units) + u' ' + chart.axis().unit(units);
    EXPECT_LE(lineWidth(top, style), chart.width() - chart.plot().right() - 8.0 + 0.5)
        << top.toStdString();
  }
}

/// The children that reach out of their parents. What scrolls may.
std::vector<std::string> outside(const QWidget& window) {
  std::vector<std::string> found;
  for (const QWidget* child : window.findChildren<QWidget*>()) {
    const QWidget* const parent = child->parentWidget();
    const bool scrolls =
        qobject_cast<const QAbstractScrollArea*>(parent->parentWidget()) != nullptr;
    if (child->isVisible() && !scrolls && !parent->rect().contains(child->geometry())) {
      found.emplace_back(child->metaObject()->className());
    }
  }
  return found;
}

void expectWhole(QWidget& window) {
  Panel::settle();
  EXPECT_FALSE(picture(window).isNull());
  EXPECT_EQ(outside(window), std::vector<std::string>());
}

TEST(WithAnyFontTest, ThePanelHoldsItsPartsWhateverTheyShow) {
  Panel panel;
  panel.sampler.snapshots.set(samples({0, 12, 3}));
  panel.speedTest.lastResult.set(SpeedTestResult{1e300, 1e300, -1.0, 0});
  panel.open();
  expectWhole(*panel.view);
  for (const QString& name : longNames()) {
    ConnectionInfo info;
    info.networkName = info.interfaceName = info.ipAddress = name.toStdString();
    info.publicIP = info.dns = name.toStdString();
    panel.monitor.connectionInfo.set(info);
    expectWhole(*panel.view);
    EXPECT_EQ(panel.view->width(), 340);
  }
}

TEST(WithAnyFontTest, TheDetailsHoldTheirPartsAtEverySize) {
  std::vector<std::string> names;
  for (const QString& name : longNames()) {
    names.push_back(name.toStdString());
  }
  for (int tab = 0; tab < 4; ++tab) {
    for (const QSize size : {QSize(0, 0), DetailWindowView::defaultSize, QSize(7680, 4320)}) {
      Details details;
      details.sampler.snapshots.set(samples({0, 12, 3}));
      details.tracker.processes.set(programs(names));
      details.open(tab, size);
      expectWhole(*details.view);
    }
  }
}

TEST(WithAnyFontTest, TheSettingsHoldTheirPartsAtEverySize) {
  for (const SettingsSection section : allSettingsSections) {
    for (const QSize size : {QSize(0, 0), SettingsView::defaultSize, QSize(7680, 4320)}) {
      Preferences preferences;
      preferences.open(section);
      preferences.view->resize(size);
      expectWhole(*preferences.view);
    }
  }
}

/// How much of a line is drawn, in whole pixels.
double inkOf(const QFont& font) {
  QImage image(400, 40, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::black);
  QPainter painter(&image);
  drawLine(painter, QRectF(4.0, 4.0, 390.0, 30.0), QStringLiteral("Hill 0123456789 mnlI"),
           {.font = font, .color = Qt::white});
  painter.end();
  double ink = 0.0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      ink += qGreen(image.pixel(x, y)) / 255.0;
    }
  }
  return ink;
}

TEST(WithAnyFontTest, HeavierWeightsAreDrawnWithMoreInk) {
  for (const auto& make : {TWFont::standard, TWFont::monospaced}) {
    for (const int size : {11, 15, 18}) {
      EXPECT_GT(inkOf(make(size, QFont::DemiBold)), 1.08 * inkOf(make(size, QFont::Normal)))
          << QFontInfo(make(size, QFont::DemiBold)).family().toStdString() << ' ' << size;
    }
  }
  EXPECT_GT(inkOf(TWFont::monospaced(18, QFont::Bold)),
            1.08 * inkOf(TWFont::monospaced(18, QFont::Normal)));
}

} // namespace
} // namespace tidewell::test
