#include "support/FakeTime.h"
#include "support/ImageComparison.h"
#include "support/Panel.h"
#include "ui/components/PulseAnimation.h"
#include "ui/components/Spinner.h"
#include "ui/components/TextLine.h"
#include "ui/tokens/TWColor.h"
#include "ui/tokens/TWFont.h"

#include <gtest/gtest.h>

#include <QtTest/QTest>

#include <set>

namespace tidewell::test {
namespace {

QImage cellPicture(const StatFigure& figure) {
  StatCell cell;
  cell.setFigure(figure);
  cell.resize(158, cell.sizeHint().height());
  return picture(cell);
}

TEST(StatCellTest, StandsTheFigureInTheSamePlaceWithAndWithoutUnit) {
  const QImage with = cellPicture({"Latency", "24", "ms", TWColor::text});
  const QImage without = cellPicture({"Latency", "24", "", TWColor::text});
  const QRect left(0, 0, 34, with.height());
  EXPECT_EQ(with.size(), without.size());
  EXPECT_EQ(difference(with.copy(left), without.copy(left)).pixels, 0);
  EXPECT_GT(difference(with, without).pixels, 0);
}

TEST(StatCellTest, ShowsItsLabelInUpperCaseAndKeepsItAsGiven) {
  StatCell cell;
  cell.setFigure({"Packet loss", "0.0", "%", TWColor::green});
  EXPECT_EQ(cell.figure().label, "Packet loss");
  EXPECT_EQ(difference(cellPicture({"Packet loss", "0", "%", TWColor::text}),
                       cellPicture({"PACKET LOSS", "0", "%", TWColor::text}))
                .pixels,
            0);
}

TEST(StatCellTest, FillsAllOfItselfWithSquareCorners) {
  const QImage image = cellPicture({"Jitter", "1.0", "ms", TWColor::text});
  for (const QPoint corner : {QPoint(0, 0), QPoint(157, 0), QPoint(0, image.height() - 1)}) {
    EXPECT_EQ(image.pixelColor(corner).name(), TWColor::surface2.name());
  }
}

TEST(StatCellTest, KeepsItsSizeWhateverItShows) {
  StatCell cell;
  const QSize before = cell.sizeHint();
  cell.setFigure({"Upload", QString(400, u'8'), "GB/s", TWColor::text});
  EXPECT_EQ(cell.sizeHint(), before);
}

TEST(StatCellTest, TellsInItsToolTipWhatWasCut) {
  StatCell cell;
  cell.resize(158, 66);
  cell.setFigure({"Latency", "24", "ms", TWColor::text});
  EXPECT_EQ(cell.toolTip(), "");
  cell.setFigure({"Latency", QString(309, u'9'), "ms", TWColor::text});
  EXPECT_EQ(cell.toolTip(), QString(309, u'9') + " ms");
}

TEST(StatCellTest, DrawsNothingOfTheFigureOutsideItsPadding) {
  const QImage image = cellPicture({"Upload", QString(400, u'8'), "GB/s", TWColor::text});
  for (int y = 0; y < image.height(); ++y) {
    EXPECT_EQ(image.pixelColor(image.width() - 11, y).name(), TWColor::surface2.name()) << y;
  }
}

TEST(ValueRowTest, ShrinksALongAddressAndCutsOnlyWhatStillDoesNotFit) {
  ValueRow row("Public IP", {.padding = 6}, nullptr);
  row.resize(300, row.sizeHint().height()); // as in the panel
  const QString address = QStringLiteral("2001:0db8:85a3:0000:0000:8a2e:0370:7334");
  row.setValue(address, TWColor::text);
  EXPECT_EQ(row.toolTip(), QString()) << "it is cut";
  row.setValue(address + address, TWColor::text);
  EXPECT_EQ(row.toolTip(), address + address);
}

struct BadgeLook {
  NetworkStatus status;
  const char* text;
  QColor color;
  QColor ground;
};

TEST(StatusBadgeTest, NamesTheStatusInItsColours) {
  for (const auto& [status, text, color, ground] : std::vector<BadgeLook>{
           {NetworkStatus::excellent, "Excellent", TWColor::green, TWColor::greenDim},
           {NetworkStatus::good, "Good", TWColor::green, TWColor::greenDim},
           {NetworkStatus::degraded, "High Latency", TWColor::yellow, TWColor::yellowDim},
           {NetworkStatus::down, "No Internet", TWColor::red, TWColor::redDim}}) {
    StatusBadge badge(FakeTime().time().now);
    badge.setStatus(status);
    EXPECT_EQ(badge.text(), text);
    const QImage image = picture(badge);
    EXPECT_EQ(image.pixelColor(15, badge.height() / 2).name(), color.name()) << text; // the dot
    EXPECT_EQ(image.pixelColor(badge.width() - 8, badge.height() / 2).name(), ground.name());
    EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0) << "the ends are round";
  }
}

TEST(StatusBadgeTest, HasRoomForItsTextAndItsPadding) {
  StatusBadge badge(FakeTime().time().now);
  const QFontMetricsF metrics(TWFont::standard(12, QFont::Medium));
  EXPECT_NEAR(badge.width(), 12 + 6 + 6 + metrics.horizontalAdvance("Excellent") + 12, 1.0);
  EXPECT_EQ(badge.height(), 4 + QFontMetrics(TWFont::standard(12, QFont::Medium)).height() + 4);
}

TEST(SpinnerTest, GoesRoundOnceInEightSteps) {
  FakeTime time;
  Spinner spinner(time.time().now);
  spinner.show();
  std::vector<int> spokes;
  for (int step = 0; step < 9; ++step) {
    spinner.advance();
    spokes.push_back(spinner.spoke());
    time.advance(0.1);
  }
  EXPECT_EQ(spokes, (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7, 0}));
}

TEST(SpinnerTest, RestsWhileHidden) {
  Spinner spinner(FakeTime().time().now);
  EXPECT_FALSE(spinner.isTicking());
  spinner.show();
  EXPECT_TRUE(spinner.isTicking());
  spinner.hide();
  EXPECT_FALSE(spinner.isTicking());
}

TEST(BackdropTest, IsNeverBrighterThanTheSurfaceAndDarkerThanTheCards) {
  for (const QColor& behind : {QColor(Qt::white), QColor(Qt::black), QColor(90, 160, 230)}) {
    QImage image(340, 600, QImage::Format_ARGB32_Premultiplied);
    image.fill(behind);
    QPainter painter(&image);
    paintBackdrop(painter, image.rect(), Backdrop::translucent);
    const QColor shown = image.pixelColor(170, 300);
    EXPECT_LE(shown.red(), TWColor::surface.red()) << behind.name().toStdString();
    EXPECT_LE(shown.green(), TWColor::surface.green());
    EXPECT_LE(shown.blue(), TWColor::surface.blue());
    EXPECT_GE(TWColor::surface2.red() - shown.red(), 10);
  }
}

TEST(ValueRowTest, CutsLongValuesAndTellsThemInFull) {
  ValueRow row("Network", {.padding = 6}, nullptr);
  row.resize(300, 29);
  row.setValue("Riverside", TWColor::text);
  EXPECT_EQ(row.toolTip(), "");
  const QString name = QString(200, u'W') + "end";
  row.setValue(name, TWColor::text);
  EXPECT_EQ(row.toolTip(), name);
  EXPECT_EQ(row.accessibleName(), "Network " + name);
  row.resize(4000, 29);
  row.setValue("short", TWColor::text);
  EXPECT_EQ(row.toolTip(), "");
}

TEST(ValueRowTest, LeavesRoomBetweenKeyAndValue) {
  ValueRow row("Network", {.padding = 6}, nullptr);
  row.resize(300, 29);
  row.setValue(QString(200, u'W'), TWColor::text);
  const QImage image = picture(row);
  const int keyEnd = static_cast<int>(QFontMetricsF(TWFont::body()).horizontalAdvance("Network"));
  for (int x = keyEnd + 2; x < keyEnd + 12; ++x) {
    for (int y = 0; y < image.height(); ++y) {
      EXPECT_EQ(image.pixelColor(x, y).alpha(), 0) << x << ' ' << y;
    }
  }
}

TEST(ActionButtonTest, IsPressedWithSpaceEnterAndInAllOfItsRectangle) {
  ActionButton button(Icon::gear, "Settings", nullptr);
  button.resize(67, 47);
  int presses = 0;
  QObject::connect(&button, &QPushButton::clicked, [&] { ++presses; });
  for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
    QTest::keyClick(&button, key);
  }
  EXPECT_EQ(presses, 3);
  for (const QPoint point : {QPoint(0, 0), QPoint(66, 0), QPoint(33, 24), QPoint(66, 46)}) {
    QTest::mouseClick(&button, Qt::LeftButton, {}, point);
  }
  EXPECT_EQ(presses, 7);
}

TEST(ActionButtonTest, StacksIconAndLabelWithTheirSpacing) {
  const ActionButton button(Icon::gear, "Settings", nullptr);
  const int label = QFontMetrics(TWFont::standard(10, QFont::Medium)).height();
  EXPECT_EQ(button.sizeHint().height(), 10 + 11 + 3 + label + 10);
}

TEST(TextLineTest, KeepsItsHeightWhateverItSays) {
  TextLine line({TWFont::body(), TWColor::text});
  const int height = line.sizeHint().height();
  for (const char* const text : {"", "text", "\u05D4\u05E8\u05E9\u05EA", "\u0E17\u0E35\u0E48"}) {
    line.setText(QString::fromUtf8(text));
    EXPECT_EQ(line.sizeHint().height(), height);
  }
}

TEST(PulseAnimationTest, FadesToTwoFifthsAndBackInTwoSeconds) {
  EXPECT_DOUBLE_EQ(PulseAnimation::opacityAfter(0.0), 1.0);
  EXPECT_NEAR(PulseAnimation::opacityAfter(0.5), 0.7, 0.01);
  EXPECT_DOUBLE_EQ(PulseAnimation::opacityAfter(1.0), 0.4);
  EXPECT_NEAR(PulseAnimation::opacityAfter(1.5), 0.7, 0.01);
  EXPECT_DOUBLE_EQ(PulseAnimation::opacityAfter(2.0), 1.0);
}

TEST(PulseAnimationTest, GoesOnForever) {
  for (const double seconds : {0.0, 0.3, 0.77, 1.0, 1.4}) {
    EXPECT_DOUBLE_EQ(PulseAnimation::opacityAfter(86'400.0 * 60 + seconds),
                     PulseAnimation::opacityAfter(seconds));
  }
}

TEST(PulseAnimationTest, EasesInAndOut) {
  const auto change = [](double from, double to) {
    return PulseAnimation::opacityAfter(from) - PulseAnimation::opacityAfter(to);
  };
  EXPECT_LT(change(0.0, 0.2), change(0.4, 0.6) / 2.0);
  EXPECT_LT(change(0.8, 1.0), change(0.4, 0.6) / 2.0);
}

TEST(PulseAnimationTest, HasThirtyTwoStepsEachWay) {
  std::set<double> levels;
  for (int millisecond = 0; millisecond <= 1000; ++millisecond) {
    levels.insert(PulseAnimation::opacityAfter(millisecond / 1000.0));
  }
  EXPECT_EQ(levels.size(), 33U);
}

TEST(PulseAnimationTest, StaysAtFullOpacityShouldTimeGoBack) {
  EXPECT_DOUBLE_EQ(PulseAnimation::opacityAfter(-3.0), 1.0);
}

TEST(PulseAnimationTest, BeginsWhenItsWidgetAppearsAndRestsWhileItIsHidden) {
  FakeTime time;
  PulseDot dot(time.time().now, nullptr);
  PulseAnimation& pulse = dot.pulse();
  EXPECT_EQ(dot.size(), QSize(6, 6));
  EXPECT_FALSE(pulse.isPulsing());
  EXPECT_FALSE(pulse.isTicking());
  const auto opacityAfter = [&](double seconds) {
    time.advance(seconds);
    pulse.advance();
    return pulse.opacity();
  };
  dot.show();
  EXPECT_TRUE(pulse.isPulsing());
  EXPECT_TRUE(pulse.isTicking());
  EXPECT_DOUBLE_EQ(opacityAfter(1.0), 0.4);
  dot.hide();
  EXPECT_FALSE(pulse.isTicking());
  time.advance(5.05);
  dot.show();
  EXPECT_DOUBLE_EQ(pulse.opacity(), 1.0) << "it starts afresh";
  EXPECT_DOUBLE_EQ(opacityAfter(1.0), 0.4);
}

TEST(PulseAnimationTest, IsNotDisturbedByAChangeOfStatus) {
  FakeTime time;
  StatusBadge badge(time.time().now);
  badge.show();
  time.advance(1.0);
  badge.dot().pulse().advance();
  badge.setStatus(NetworkStatus::down);
  EXPECT_DOUBLE_EQ(badge.dot().pulse().opacity(), 0.4);
}

} // namespace
} // namespace tidewell::test
