#include "base/Translation.h"

#include <gtest/gtest.h>

namespace tidewell {
namespace {

TEST(FilledTest, PutsValuesWhereThePatternWantsThem) {
  EXPECT_EQ(filled("%1 of %2", {"3", "5"}), "3 of 5");
  EXPECT_EQ(filled("%2: %1, %1", {"a", "b"}), "b: a, a");
  EXPECT_EQ(filled("", {"a"}), "");
}

TEST(FilledTest, LeavesPlacesWithoutAValueAndOtherPercentSigns) {
  EXPECT_EQ(filled("%1 %2 %0 5 % %", {"a"}), "a %2 %0 5 % %");
}

TEST(FilledTest, DoesNotReadValuesAsPatterns) { EXPECT_EQ(filled("%1 %2", {"%2", "%1"}), "%2 %1"); }

} // namespace
} // namespace tidewell
