#include "ui/placement/PanelPlacement.h"

#include <gtest/gtest.h>

namespace tidewell::test {
namespace {

TEST(ScreenPoint, IsTheSameWithoutScaling) {
  EXPECT_EQ(fromHostPixels({812, 16}, {{QRect(0, 0, 1280, 720), 1.0}}), QPoint(812, 16));
}

TEST(ScreenPoint, IsDividedByTheScaleOfItsScreen) {
  const QList<ScreenScale> screens = {{QRect(0, 0, 1024, 576), 1.25}};
  EXPECT_EQ(fromHostPixels({1250, 20}, screens), QPoint(1000, 16));
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
