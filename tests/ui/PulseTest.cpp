#include "support/FakeTime.h"
#include "support/Panel.h"
#include "ui/components/PulseAnimation.h"

#include <gtest/gtest.h>

#include <set>

namespace tidewell::test {
namespace {

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

TEST(PulseAnimationTest, BeginsWhenItsWidgetAppears) {
  FakeTime time;
  PulseDot dot(time.time().now, nullptr);
  EXPECT_FALSE(dot.pulse().isPulsing());
  EXPECT_FALSE(dot.pulse().isTicking());
  dot.show();
  EXPECT_TRUE(dot.pulse().isPulsing());
  EXPECT_TRUE(dot.pulse().isTicking());
  time.advance(1.0);
  dot.pulse().advance();
  EXPECT_DOUBLE_EQ(dot.pulse().opacity(), 0.4);
}

TEST(PulseAnimationTest, RestsWhileHiddenAndThenStartsAfresh) {
  FakeTime time;
  PulseDot dot(time.time().now, nullptr);
  dot.show();
  time.advance(0.9);
  dot.pulse().advance();
  dot.hide();
  EXPECT_FALSE(dot.pulse().isTicking());
  time.advance(5.05);
  dot.show();
  EXPECT_DOUBLE_EQ(dot.pulse().opacity(), 1.0);
  time.advance(1.0);
  dot.pulse().advance();
  EXPECT_DOUBLE_EQ(dot.pulse().opacity(), 0.4);
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

TEST(PulseDotTest, IsSixBySix) {
  const PulseDot dot(FakeTime().time().now, nullptr);
  EXPECT_EQ(dot.size(), QSize(6, 6));
}

} // namespace
} // namespace tidewell::test
