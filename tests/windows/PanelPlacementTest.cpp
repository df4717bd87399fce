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

TEST(ScreenPoint, IsDividedByTheScaleOfItsScreen) {
  EXPECT_EQ(fromHostPixels({812, 16}, {{QRect(0, 0, 1280, 720), 1.0}}), QPoint(812, 16));
  EXPECT_EQ(fromHostPixels({1250, 20}, {{QRect(0, 0, 1024, 576), 1.25}}), QPoint(1000, 16));
}

TEST(ScreenPoint, KeepsTheCornerOfItsScreenWhichHasAScaleOfItsOwn) {
  const QList<ScreenScale> screens = {{QRect(0, 0, 1280, 720), 1.0},
                                      {QRect(1280, 0, 1920, 1080), 2.0}};
  EXPECT_EQ(fromHostPixels({1279, 10}, screens), QPoint(1279, 10));
  EXPECT_EQ(fromHostPixels({1280 + 3000, 40}, screens), QPoint(1280 + 1500, 20));
}

TEST(ScreenPoint, OnNoScreenIsTakenForTheNearest) {
  const QList<ScreenScale> screens = {{QRect(0, 0, 1280, 720), 1.0}};
  EXPECT_EQ(fromHostPixels({2'000'000'000, -2'000'000'000}, screens), QPoint(1279, 0));
  EXPECT_EQ(fromHostPixels({5, 5}, {}), QPoint(5, 5));
}

} // namespace
} // namespace tidewell::test
