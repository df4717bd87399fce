#include "app/ItemHost.h"

#include "support/VirtualScheduler.h"

#include <gtest/gtest.h>

namespace tidewell::test {
namespace {

constexpr auto label = ItemPresentation::label;
constexpr auto wide = ItemPresentation::widePicture;
constexpr auto square = ItemPresentation::squareTile;

TEST(ItemHost, IsKnownByItsProcess) {
  const std::pair<const char*, ItemPresentation> hosts[] = {
      {"gnome-shell", label},     {"mate-indicator-", label},  {"notification-ar", label},
      {"ayatana-indicat", label}, {"xapp-sn-watcher", wide},   {"waybar", wide},
      {"xfce4-panel", square},    {"panel-6-systray", square}, {"wrapper-2.0", square},
      {"lxqt-panel", square},     {"plasmashell", square},     {"swaybar", square},
  };
  for (const auto& [process, presentation] : hosts) {
    EXPECT_EQ(presentationOf(process), presentation) << process;
  }
}

TEST(ItemHost, IsUnknownWhereItsProcessShowsNothingOrWasNeverSeen) {
  for (const char* process : {"", "python3", "kded5", "kded6", "gnome", "my-gnome-shell"}) {
    EXPECT_EQ(presentationOf(process), std::nullopt) << process;
  }
}

TEST(ItemHost, IsBelievedWhereItsItemWasClickedUnlessItCountsFromItself) {
  EXPECT_TRUE(tellsClickedPlace("xfce4-panel"));
  EXPECT_TRUE(tellsClickedPlace("mate-panel"));
  EXPECT_TRUE(tellsClickedPlace(""));
  EXPECT_FALSE(tellsClickedPlace("notification-ar"));
}

TEST(ItemHost, ReadsTheToolTipWithThePictureInXfceOnly) {
  for (const char* process : {"xfce4-panel", "panel-6-systray", "wrapper-2.0"}) {
    EXPECT_TRUE(readsAllWithPicture(process)) << process;
  }
  for (const char* process : {"lxqt-panel", "plasmashell", ""}) {
    EXPECT_FALSE(readsAllWithPicture(process)) << process;
  }
}

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
