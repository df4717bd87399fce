#include "support/ImageComparison.h"
#include "support/Scene.h"
#include "ui/charts/AxisCharts.h"
#include "ui/panel/ActionBar.h"
#include "ui/panel/PanelSections.h"
#include "ui/tokens/TWColor.h"

#include <gtest/gtest.h>

#include <QCryptographicHash>
#include <QCursor>
#include <QFile>
#include <QPainter>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

namespace tidewell::test {
namespace {

QImage grey() {
  QImage image(20, 10, QImage::Format_ARGB32);
  image.fill(qRgb(100, 100, 100));
  return image;
}

TEST(ImageComparisonTest, FindsNothingBetweenEqualPictures) {
  EXPECT_EQ(difference(grey(), grey()).pixels, 0);
}

TEST(ImageComparisonTest, FindsOnePixelThatChanged) {
  QImage changed = grey();
  changed.setPixel(7, 3, qRgb(100 + channelTolerance + 1, 100, 100));
  const ImageDifference found = difference(grey(), changed);
  EXPECT_EQ(found.pixels, 1);
  EXPECT_EQ(found.picture.pixel(7, 3), qRgb(255, 255, 255));
  EXPECT_EQ(found.picture.pixel(8, 3), qRgb(0, 0, 0));
}

TEST(ImageComparisonTest, ForgivesWhatNobodySees) {
  QImage changed = grey();
  changed.setPixel(7, 3, qRgb(100 + channelTolerance, 100, 100));
  EXPECT_EQ(difference(grey(), changed).pixels, 0);
}

TEST(ImageComparisonTest, FindsTransparencyThatChanged) {
  QImage changed = grey();
  changed.setPixel(0, 0, qRgba(100, 100, 100, 0));
  EXPECT_EQ(difference(grey(), changed).pixels, 1);
}

TEST(ImageComparisonTest, FindsAnotherSize) {
  EXPECT_EQ(difference(grey(), grey().scaled(10, 10)).pixels, 100);
}

TEST(ImageComparisonTest, TellsOfAMissingPictureAndKeepsTheActualOne) {
  if (qEnvironmentVariableIsSet("TIDEWELL_UPDATE_GOLDEN")) {
    GTEST_SKIP() << "skipped: pictures are being stored";
  }
  const QString fault = faultOf(QStringLiteral("missing"), grey());
  EXPECT_TRUE(fault.contains("missing.png is missing")) << fault.toStdString();
  EXPECT_TRUE(QFile::remove(QStringLiteral(TIDEWELL_UNEQUAL "/missing.actual.png")));
}

QByteArray digestOf(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) {
    return {};
  }
  return QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256).toHex();
}

// Other versions of the fonts draw different pictures.
QByteArray fontDigests() {
  return digestOf(QStringLiteral(TIDEWELL_INTER)) + '\n' +
         digestOf(QStringLiteral(TIDEWELL_JETBRAINS)) + '\n' +
         digestOf(QStringLiteral(TIDEWELL_DEJAVU "/DejaVuSans.ttf")) + '\n';
}

bool fontsAreTheStoredOnes() {
  QFile stored(QStringLiteral(TIDEWELL_GOLDEN "/fonts.sha256"));
  if (qEnvironmentVariableIsSet("TIDEWELL_UPDATE_GOLDEN")) {
    return stored.open(QIODevice::WriteOnly) && stored.write(fontDigests()) > 0;
  }
  return stored.open(QIODevice::ReadOnly) && stored.readAll() == fontDigests();
}

class GoldenTest : public testing::TestWithParam<Scene> {};

TEST_P(GoldenTest, LooksAsStored) {
  if (!fontsAreTheStoredOnes()) {
    GTEST_SKIP() << "skipped: the pictures were made with other editions of the fonts";
  }
  // These pictures were stored with an entry hovered.
  const std::set<std::string> hovered = {"settings-display", "settings-advanced", "settings-small"};
  const bool isHovered = hovered.contains(GetParam().name);
  QCursor::setPos(isHovered ? QPoint(10, 10) : QPoint(700, 780));
  const auto widget = GetParam().make();
  for (const QWidget* child : widget->findChildren<QWidget*>()) {
    EXPECT_TRUE(isHovered || !child->underMouse()) << child->metaObject()->className();
  }
  const QString name = QString::fromStdString(GetParam().name);
  for (const int scale : {1, 2}) {
    const QString stored = name + u'@' + QString::number(scale) + u'x';
    EXPECT_EQ(faultOf(stored, picture(*widget, scale)).toStdString(), "");
  }
}

/// A widget at fractional scales, one below the other, on the windows' ground.
QImage atFractionalScales(QWidget& widget) {
  widget.show();
  Panel::settle();
  std::vector<QImage> images;
  int height = 0;
  for (const double scale : {1.25, 1.5, 1.75}) {
    images.push_back(picture(widget, scale));
    images.back().setDevicePixelRatio(1.0);
    height += images.back().height();
  }
  QImage sheet(images.back().width(), height, QImage::Format_ARGB32_Premultiplied);
  sheet.fill(TWColor::surface);
  QPainter painter(&sheet);
  int y = 0;
  for (const QImage& image : images) {
    painter.drawImage(0, y, image);
    y += image.height();
  }
  return sheet;
}

TEST(FractionalScalesTest, LookAsStored) {
  if (!fontsAreTheStoredOnes()) {
    GTEST_SKIP() << "skipped: the pictures were made with other editions of the fonts";
  }
  QCursor::setPos(700, 780);
  StatsGrid figures(nullptr);
  figures.resize(300, figures.sizeHint().height());
  figures.setFigures(1'250'000, 21.4, 1.3, 0.0);
  EXPECT_EQ(faultOf(QStringLiteral("scales-figures"), atFractionalScales(figures)).toStdString(),
            "");
  ActionBar actions(nullptr);
  actions.resize(300, actions.sizeHint().height());
  EXPECT_EQ(faultOf(QStringLiteral("scales-actions"), atFractionalScales(actions)).toStdString(),
            "");
  BandwidthChart chart;
  chart.resize(300, chart.sizeHint().height());
  chart.setSnapshots(evening(60));
  EXPECT_EQ(faultOf(QStringLiteral("scales-chart"), atFractionalScales(chart)).toStdString(), "");
}

/// Some scenes side by side.
QImage together(const std::vector<std::string>& names) {
  std::vector<QImage> images;
  for (const Scene& scene : allScenes()) {
    if (std::ranges::count(names, scene.name) > 0) {
      images.push_back(picture(*scene.make()));
    }
  }
  QSize size(0, 0);
  for (const QImage& image : images) {
    size = QSize(size.width() + image.width(), std::max(size.height(), image.height()));
  }
  QImage sheet(size, QImage::Format_ARGB32_Premultiplied);
  sheet.fill(TWColor::surface);
  QPainter painter(&sheet);
  int x = 0;
  for (const QImage& image : images) {
    painter.drawImage(x, 0, image);
    x += image.width();
  }
  return sheet;
}

// FontsTest runs this with other fonts.
TEST(OtherFontsTest, DISABLED_LookAsStored) {
  if (!fontsAreTheStoredOnes()) {
    GTEST_SKIP() << "skipped: the pictures were made with other editions of the fonts";
  }
  QCursor::setPos(700, 780);
  const QString name = qEnvironmentVariable("TIDEWELL_TEST_FONTS_NAME");
  const QImage sheet = together({"panel-excellent", "detail-overview"});
  EXPECT_EQ(faultOf(QStringLiteral("fonts-") + name, sheet).toStdString(), "");
}

INSTANTIATE_TEST_SUITE_P(Scenes, GoldenTest, testing::ValuesIn(allScenes()), sceneName);

} // namespace
} // namespace tidewell::test
