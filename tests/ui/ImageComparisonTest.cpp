#include "support/ImageComparison.h"

#include <gtest/gtest.h>

#include <QFile>

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

} // namespace
} // namespace tidewell::test
