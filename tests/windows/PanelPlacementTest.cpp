#include "ui/placement/PanelPlacement.h"

#include <gtest/gtest.h>

namespace tidewell::test {
namespace {

constexpr QSize panel(340, 620);
constexpr QRect screen(0, 0, 1280, 720);
constexpr QRect belowBar(0, 32, 1280, 688);
constexpr QRect aboveBar(0, 0, 1280, 688);

TEST(PanelPlacement, CentresThePanelBelowAnItemInABarAtTheTop) {
  EXPECT_EQ(panelPosition({640, 16}, panel, screen, belowBar), QPoint(470, 32 + panelGap));
}

TEST(PanelPlacement, StandsAboveAnItemInABarAtTheBottom) {
  const QPoint corner = panelPosition({640, 704}, panel, screen, aboveBar);
  EXPECT_EQ(corner, QPoint(470, 688 - panelGap - 620));
}

TEST(PanelPlacement, StandsBesideAnItemInABarAtTheSide) {
  const QRect rightOfBar(48, 0, 1232, 720);
  const QRect leftOfBar(0, 0, 1232, 720);
  EXPECT_EQ(panelPosition({24, 360}, panel, screen, rightOfBar), QPoint(48 + panelGap, 50));
  EXPECT_EQ(panelPosition({1256, 360}, panel, screen, leftOfBar),
            QPoint(1232 - panelGap - 340, 50));
}

TEST(PanelPlacement, StandsAboveAnItemInACornerWhereNoSpaceIsReserved) {
  // Plasma 5.27 under Wayland, where KWin does not tell other programs of the bar.
  const QRect whole(0, 0, 1280, 800);
  const QPoint corner = panelPosition({1259, 778}, {340, 615}, whole, whole);
  EXPECT_EQ(corner, QPoint(1280 - panelGap - 340, 758 - panelGap - 615));
}

TEST(PanelPlacement, NeverLeavesTheWorkArea) {
  for (const QPoint anchor : {QPoint(0, 0), QPoint(1279, 0), QPoint(1279, 719), QPoint(0, 719),
                              QPoint(-50'000, 90'000), QPoint(640, 360)}) {
    const QRect placed(panelPosition(anchor, panel, screen, belowBar), panel);
    EXPECT_TRUE(belowBar.contains(placed)) << anchor.x() << "," << anchor.y();
  }
}

TEST(PanelPlacement, KeepsItsTopLeftOnAScreenThatIsTooSmall) {
  const QRect small(0, 0, 320, 240);
  EXPECT_EQ(panelPosition({300, 5}, panel, small, small), QPoint(panelGap, panelGap));
}

TEST(PanelPlacement, StaysOnTheScreenThatWasClicked) {
  const QRect second(1280, 0, 1920, 1080);
  const QRect workArea(1280, 24, 1920, 1056);
  EXPECT_EQ(panelPosition({3190, 12}, panel, second, workArea),
            QPoint(3200 - panelGap - 340, 24 + panelGap));
}

TEST(PanelPlacement, TakesTheWholeScreenWhereNoWorkAreaIsKnown) {
  EXPECT_EQ(panelPosition({640, 0}, panel, screen, QRect()), QPoint(470, panelGap));
}

TEST(PanelPlacement, GuessesTheEndOfTheBar) {
  EXPECT_EQ(panelPosition(likelyAnchor(screen, belowBar), panel, screen, belowBar),
            QPoint(1280 - panelGap - 340, 32 + panelGap));
  EXPECT_EQ(panelPosition(likelyAnchor(screen, aboveBar), panel, screen, aboveBar),
            QPoint(1280 - panelGap - 340, 688 - panelGap - 620));
  EXPECT_EQ(panelPosition(likelyAnchor(screen, screen), panel, screen, screen),
            QPoint(1280 - panelGap - 340, panelGap));
}

TEST(PanelPlacement, KeepsABarFreeThatHidesOrFloats) {
  const int height = 400;
  // A click in the middle of a bar of 44 pixels that reserves nothing.
  EXPECT_EQ(panelPosition({1255, 697}, {340, height}, screen, screen).y(), 676 - panelGap - height);
  EXPECT_EQ(panelPosition({640, 22}, {340, height}, screen, screen).y(), 44 + panelGap);
  EXPECT_EQ(panelPosition({22, 360}, {340, height}, screen, screen).x(), 44 + panelGap);
  // Plasma's bar floats 8 pixels above the edge, and reserves only its own 44.
  const QRect plasma(0, 0, 1280, 800);
  const int bottom = panelPosition({1247, 770}, panel, plasma, {0, 0, 1280, 756}).y() + 620;
  EXPECT_LE(bottom, 748);
  EXPECT_GE(bottom, 740);
}

// What hosts told on screens as they were.

const QList<ScreenArea> plain = {{QRect(0, 0, 1280, 800), 1.0, QRect(0, 0, 1280, 756)}};
const QList<ScreenArea> dense = {{QRect(0, 0, 1280, 800), 2.0, QRect(0, 0, 1280, 756)}};
constexpr QPoint desktop(640, 400);

std::optional<QPoint> onX11(const QPoint& told, const QPoint& pointer,
                            const QList<ScreenArea>& screens) {
  return clickedPoint(pointReadings(told, screens, LikelyUnits::device), pointer, screens);
}

TEST(ClickOnX11, IsReadInTheUnitsThatLieOnABar) {
  EXPECT_EQ(onX11({2204, 1556}, desktop, dense), QPoint(1102, 778)); // Plasma
  EXPECT_EQ(onX11({988, 760}, desktop, dense), QPoint(988, 760));    // Cinnamon
  const QList<ScreenArea> gnome = {{QRect(0, 0, 1280, 800), 2.0, QRect(0, 32, 1280, 768)}};
  EXPECT_EQ(onX11({1075, 16}, {1075, 16}, gnome), QPoint(1075, 16));
}

TEST(ClickOnX11, IsWhereThePointerIsOnABar) {
  // MATE's notification area counts from its own corner.
  EXPECT_EQ(onX11({12, 8}, {1200, 780}, plain), QPoint(1200, 780));
}

TEST(ClickOnX11, OffEveryScreenIsUnknown) {
  for (const QPoint told : {QPoint(-1, -1), QPoint(2'000'000'000, -2'000'000'000),
                            QPoint(-2'147'483'647 - 1, 2'147'483'647)}) {
    EXPECT_EQ(onX11(told, desktop, plain), std::nullopt);
    EXPECT_EQ(onX11(told, {1200, 780}, plain), QPoint(1200, 780));
  }
  EXPECT_EQ(onX11({5, 5}, desktop, {}), std::nullopt);
}

TEST(ClickOnX11, KeepsTheCornerOfItsScreenWhichHasAScaleOfItsOwn) {
  const QList<ScreenArea> screens = {
      {QRect(0, 0, 1280, 720), 1.0, QRect(0, 24, 1280, 696)},
      {QRect(1280, 0, 1920, 1080), 2.0, QRect(1280, 24, 1920, 1056)}};
  EXPECT_EQ(onX11({1279, 10}, desktop, screens), QPoint(1279, 10));
  EXPECT_EQ(onX11({1280 + 3000, 40}, desktop, screens), QPoint(1280 + 1500, 20));
}

PanelPlace onWayland(const QPoint& told, std::optional<QPoint> pointer, const QSize& work,
                     const QList<ScreenArea>& screens) {
  const QRect own = screens.constFirst().geometry;
  return panelPlace(readingsOn(own, told, {screens.constFirst().scale}), pointer, own.size(), work);
}

TEST(ClickOnWayland, TellsTheBarsEdge) {
  struct {
    QPoint told;
    QSize work;
    QRect workArea;
  } const recorded[] = {
      {{1255, 778}, {1280, 756}, {0, 0, 1280, 756}}, // Plasma, bar at the bottom
      {{1255, 22}, {1280, 756}, {0, 44, 1280, 756}}, // at the top
      {{22, 775}, {1236, 800}, {44, 0, 1236, 800}},  // at the left
      {{1258, 775}, {1236, 800}, {0, 0, 1236, 800}}, // at the right
  };
  for (const auto& row : recorded) {
    const PanelPlace place = onWayland(row.told, std::nullopt, row.work, plain);
    EXPECT_EQ(place.workArea, row.workArea);
    EXPECT_EQ(place.anchor, row.told);
  }
  EXPECT_EQ(onWayland({2204, 1556}, std::nullopt, {1280, 756}, dense).anchor, QPoint(1102, 778));
}

TEST(ClickOnWayland, IsCertainUnlessThePointMayBeRelativeToTheBar) {
  EXPECT_TRUE(onWayland({1255, 778}, std::nullopt, {1280, 756}, plain).isCertain);
  EXPECT_FALSE(onWayland({1101, 20}, std::nullopt, {1280, 768}, plain).isCertain);
}

TEST(ClickOnWayland, IsWhereThePointerIsOnABar) {
  const PanelPlace place = onWayland({1101, 20}, QPoint(1101, 788), {1280, 768}, plain);
  EXPECT_EQ(place.anchor, QPoint(1101, 788));
  EXPECT_TRUE(place.isCertain);
}

TEST(ClickOnWayland, WithoutEvidenceIsTheEndOfTheBar) {
  const auto unknown = [](std::optional<QPoint> pointer, const QSize& work) {
    return onWayland({-70'000, 2'000'000'000}, pointer, work, plain);
  };
  EXPECT_EQ(unknown(std::nullopt, {1280, 756}).anchor, QPoint(1279, 799));
  EXPECT_EQ(unknown(std::nullopt, {1236, 800}).anchor, QPoint(0, 799));
  EXPECT_EQ(unknown(QPoint(300, 100), {1280, 756}).anchor, QPoint(1279, 0));
}

TEST(ClickOnWayland, ChoosesTheScreenThatAllReadingsShare) {
  const QList<ScreenArea> two = {{QRect(0, 0, 1280, 800)}, {QRect(1280, 0, 1280, 800)}};
  const auto screenOf = [&](const QPoint& told) {
    return clickedScreen(pointReadings(told, two, LikelyUnits::logical), two);
  };
  EXPECT_EQ(screenOf({2535, 778}), 1);
  EXPECT_EQ(screenOf({1255, 778}), 0);
  EXPECT_EQ(screenOf({1200, 12}), std::nullopt); // Waybar, on either screen
  EXPECT_EQ(screenOf({-5, 778}), std::nullopt);
}

TEST(ClickOnWayland, OnASecondScreenCountsFromItsCorner) {
  // Plasma at scale 2, with the item 25 pixels from the corner.
  const QList<ScreenArea> two = {{QRect(0, 0, 1280, 800), 2.0}, {QRect(1280, 0, 1280, 800), 2.0}};
  const QPoint told(1330, 1556);
  EXPECT_EQ(clickedScreen(pointReadings(told, two, LikelyUnits::logical), two), std::nullopt);
  const QRect second = two[1].geometry;
  EXPECT_EQ(
      panelPlace(readingsOn(second, told, {2.0}), std::nullopt, {1280, 800}, {1280, 756}).anchor,
      QPoint(25, 778));
  // Waybar, whose points are relative to the tray.
  EXPECT_TRUE(readingsOn(second, {25, 12}, {1.0}).contains(QPoint(25, 12)));
}

TEST(ClickOnWayland, OfAFractionalScaleMayBeCountedInTheRoundedOne) {
  const QRect own(0, 0, 1280, 800);
  for (const QPoint told : {QPoint(1881, 1167), QPoint(2508, 1556)}) {
    EXPECT_EQ(
        panelPlace(readingsOn(own, told, {1.5, 2.0}), std::nullopt, own.size(), {1280, 756}).anchor,
        QPoint(1254, 778));
  }
}

} // namespace
} // namespace tidewell::test
