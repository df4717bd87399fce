#include "base/Checked.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace tidewell::test {
namespace {

constexpr auto lowest = std::numeric_limits<std::int64_t>::min();
constexpr auto highest = std::numeric_limits<std::int64_t>::max();

TEST(Checked, CalculatesUpToTheEdges) {
  EXPECT_EQ(checkedAdd(highest - 1, 1), highest);
  EXPECT_EQ(checkedSubtract(lowest + 1, 1), lowest);
  EXPECT_EQ(checkedTruncate(2.9), 2);
  EXPECT_EQ(checkedTruncate(-2.9), -2);
  EXPECT_EQ(checkedTruncate(-9223372036854775808.0), lowest);
}

TEST(CheckedDeathTest, AbortsWithAMessageBeyondThem) {
  EXPECT_DEATH(static_cast<void>(checkedAdd(highest, 1)), "tidewell: arithmetic overflow");
  EXPECT_DEATH(static_cast<void>(checkedSubtract(lowest, 1)), "tidewell: arithmetic overflow");
  EXPECT_DEATH(static_cast<void>(checkedTruncate(9223372036854775808.0)), "does not fit");
  EXPECT_DEATH(static_cast<void>(checkedTruncate(std::numeric_limits<double>::quiet_NaN())),
               "does not fit");
  EXPECT_DEATH(static_cast<void>(checkedTruncate(std::numeric_limits<double>::infinity())),
               "does not fit");
}

} // namespace
} // namespace tidewell::test
