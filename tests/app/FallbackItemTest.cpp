#include "app/FallbackItem.h"

#include "support/VirtualScheduler.h"

#include <gtest/gtest.h>

namespace tidewell::test {
namespace {

class FallbackItemTest : public testing::Test {
protected:
  VirtualScheduler scheduler;
  std::vector<bool> told;
  FallbackItem item{scheduler.main(), [this](bool isWanted) { told.push_back(isWanted); }};
};

TEST_F(FallbackItemTest, IsNotWantedWhereAPanelTakesTheItemInTime) {
  scheduler.advance(15.0);
  item.setTaken(true);
  scheduler.advance(3600.0);
  EXPECT_TRUE(told.empty());
}

TEST_F(FallbackItemTest, IsWantedOnceWhereNoPanelTakesTheItem) {
  item.setTaken(false);
  scheduler.advance(3600.0);
  item.setTaken(false);
  scheduler.advance(3600.0);
  EXPECT_EQ(told, std::vector<bool>{true});
}

TEST_F(FallbackItemTest, GoesWhenAPanelComesAndComesWhenItHasLongBeenGone) {
  scheduler.advance(60.0);
  item.setTaken(true);
  item.setTaken(false);
  scheduler.advance(10.0);
  EXPECT_EQ(told, (std::vector<bool>{true, false}));
  scheduler.advance(30.0);
  EXPECT_EQ(told, (std::vector<bool>{true, false, true}));
}

TEST_F(FallbackItemTest, OverlooksAPanelThatRestarts) {
  item.setTaken(true);
  item.setTaken(false);
  scheduler.advance(10.0);
  item.setTaken(true);
  scheduler.advance(3600.0);
  EXPECT_TRUE(told.empty());
}

} // namespace
} // namespace tidewell::test
