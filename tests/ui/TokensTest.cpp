#include "ui/components/FittedText.h"
#include "ui/components/ShownText.h"
#include "ui/tokens/TWColor.h"
#include "ui/tokens/TWFont.h"

#include <gtest/gtest.h>

#include <QFontInfo>
#include <QFontMetricsF>
#include <QLocale>

#include <limits>

namespace tidewell::test {
namespace {

TEST(TWColorTest, HasTheSeventeenColours) {
  const std::vector<std::pair<QColor, const char*>> palette = {
      {TWColor::green, "#22c55e"},        {TWColor::greenDim, "#0a3d1e"},
      {TWColor::yellow, "#eab308"},       {TWColor::yellowDim, "#3d3008"},
      {TWColor::red, "#ef4444"},          {TWColor::redDim, "#3d0a0a"},
      {TWColor::accent, "#3b82f6"},       {TWColor::accentDim, "#1e3a5f"},
      {TWColor::cyan, "#06b6d4"},         {TWColor::purple, "#a855f7"},
      {TWColor::surface, "#1a1a1a"},      {TWColor::surface2, "#242424"},
      {TWColor::surface3, "#2e2e2e"},     {TWColor::borderSubtle, "#222222"},
      {TWColor::text, "#e8e8e8"},         {TWColor::textSecondary, "#888888"},
      {TWColor::textTertiary, "#555555"},
  };
  for (const auto& [color, name] : palette) {
    EXPECT_EQ(color.name().toStdString(), name);
    EXPECT_EQ(color.alpha(), 255) << name;
  }
  EXPECT_EQ(palette.size(), 17U);
}

TEST(TWColorTest, KeepsTheExactComponents) {
  EXPECT_NEAR(TWColor::accent.redF(), 0.231, 1e-4);
  EXPECT_NEAR(TWColor::accent.greenF(), 0.51, 1e-4);
  EXPECT_NEAR(TWColor::accent.blueF(), 0.965, 1e-4);
}

struct Style {
  const QFont& font;
  int pixels;
  int weight;
  const char* family;
};

TEST(TWFontTest, HasTheSevenStyles) {
  const std::vector<Style> styles = {
      {TWFont::statValue(), 18, QFont::DemiBold, "JetBrains Mono"},
      {TWFont::monoSmall(), 12, QFont::Normal, "JetBrains Mono"},
      {TWFont::monoTiny(), 11, QFont::Normal, "JetBrains Mono"},
      {TWFont::label(), 11, QFont::DemiBold, "Inter"},
      {TWFont::body(), 13, QFont::Normal, "Inter"},
      {TWFont::caption(), 11, QFont::Normal, "Inter"},
      {TWFont::sectionTitle(), 15, QFont::DemiBold, "Inter"},
  };
  for (const Style& style : styles) {
    EXPECT_EQ(style.font.pixelSize(), style.pixels);
    EXPECT_EQ(style.font.weight(), style.weight);
    // Checks the resolved font, not only the requested one.
    EXPECT_TRUE(QFontInfo(style.font).family().startsWith(style.family));
  }
}

TEST(TWFontTest, TakesTheSystemsFaceWhereItsOwnIsMissing) {
  const QStringList system = {"Some Sans", "Some Other"};
  EXPECT_EQ(TWFont::families("Inter", {"Some Sans", "Inter"}, system), QStringList("Inter"));
  EXPECT_EQ(TWFont::families("Inter", {"Some Sans"}, system), system);
  EXPECT_EQ(TWFont::families("Inter", {}, system), system);
}

TEST(TWFontTest, ShowsHyphensAsTheyStand) {
  const QFontMetricsF metrics(TWFont::monoSmall());
  EXPECT_DOUBLE_EQ(metrics.horizontalAdvance("--"), 2.0 * metrics.horizontalAdvance("-"));
}

TEST(TabularTextTest, GivesEqualWidthToNumbersOfEqualLength) {
  const QFont font = TWFont::standard(13, QFont::Normal);
  EXPECT_DOUBLE_EQ(TabularText::width(font, "11.1 Mbps"), TabularText::width(font, "88.8 Mbps"));
  // The font itself has digits of different widths.
  const QFontMetricsF metrics(font);
  EXPECT_NE(metrics.horizontalAdvance("11.1 Mbps"), metrics.horizontalAdvance("88.8 Mbps"));
}

TEST(FittedTextTest, LeavesWhatFits) {
  const FittedText fitted("12 KB/s", {TWFont::statValue(), {}}, 200.0);
  EXPECT_EQ(fitted.text, "12 KB/s");
  EXPECT_EQ(fitted.font.pixelSize(), 18);
  EXPECT_FALSE(fitted.isCut);
}

TEST(FittedTextTest, SetsWideTextSmallerBeforeItCutsIt) {
  TextStyle style{TWFont::statValue(), {}};
  style.smallestPixelSize = 10;
  const FittedText smaller("4611686018.4 GB/s", style, 133.0);
  EXPECT_EQ(smaller.text, "4611686018.4 GB/s");
  EXPECT_LT(smaller.font.pixelSize(), 18);
  EXPECT_LE(QFontMetricsF(smaller.font).horizontalAdvance(smaller.text), 133.5);

  const FittedText cut(QString(309, u'9'), style, 133.0);
  EXPECT_TRUE(cut.isCut);
  EXPECT_EQ(cut.font.pixelSize(), 10);
  EXPECT_LE(QFontMetricsF(cut.font).horizontalAdvance(cut.text), 133.5);
}

TEST(FittedTextTest, EndsInNoWidthAtAll) {
  for (const double width : {0.0, -5.0}) {
    EXPECT_TRUE(FittedText("text", {TWFont::body(), {}}, width).isCut);
    EXPECT_FALSE(FittedText("", {TWFont::body(), {}}, width).isCut);
  }
}

TEST(ShownTextTest, ReplacesWhatWouldBreakALabel) {
  EXPECT_EQ(shownText("a\nb\x1b\xff"), QString("a\uFFFDb\uFFFD\uFFFD"));
  EXPECT_EQ(shownText("\u202E1.1.1.1"), QString("\uFFFD1.1.1.1"));
  EXPECT_EQ(shownText("Caf\u00E9"), QString("Caf\u00E9"));
}

TEST(ShownTextTest, WritesFiguresTheSameInEveryLocale) {
  QLocale::setDefault(QLocale(QLocale::German));
  EXPECT_EQ(figureText(1234.56, 1), "1234.6");
  QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedKingdom));
}

TEST(ShownTextTest, NeverWritesWhatIsNoNumber) {
  EXPECT_EQ(figureText(std::numeric_limits<double>::quiet_NaN(), 1), "--");
  EXPECT_EQ(figureText(std::numeric_limits<double>::infinity(), 0), "--");
  EXPECT_EQ(figureText(-std::numeric_limits<double>::infinity(), 0), "--");
}

} // namespace
} // namespace tidewell::test
