#include "base/NumberText.h"

#include <gtest/gtest.h>

#include <clocale>
#include <limits>

namespace tidewell::test {
namespace {

TEST(NumberText, RoundsExactHalvesToTheEvenDigit) {
  EXPECT_EQ(fixedText(0.5, 0), "0");
  EXPECT_EQ(fixedText(1.5, 0), "2");
  EXPECT_EQ(fixedText(2.5, 0), "2");
  EXPECT_EQ(fixedText(0.25, 1), "0.2");
  EXPECT_EQ(fixedText(0.75, 1), "0.8");
  EXPECT_EQ(fixedText(-2.5, 0), "-2");
}

TEST(NumberText, RoundsWhatOnlyLooksLikeAHalfByItsTrueValue) {
  EXPECT_EQ(fixedText(0.15, 1), "0.1") << "the double is a little below";
  EXPECT_EQ(fixedText(0.35, 1), "0.3");
  EXPECT_EQ(fixedText(0.45, 1), "0.5");
}

TEST(NumberText, KeepsTheSignOfANegativeZero) { EXPECT_EQ(fixedText(-0.001, 1), "-0.0"); }

TEST(NumberText, WritesTheLargestNumbers) {
  EXPECT_EQ(fixedText(std::numeric_limits<double>::max(), 2).size(), 309U + 3U);
  EXPECT_EQ(fixedText(9223372036854775807.0, 0), "9223372036854775808");
}

TEST(NumberText, ReadsWholeNumbersOnly) {
  EXPECT_EQ(parseDouble("14.201"), 14.201);
  EXPECT_EQ(parseDouble("-3"), -3.0);
  EXPECT_EQ(parseDouble("+2.5"), 2.5);
  EXPECT_EQ(parseDouble("1e3"), 1000.0);
  for (const char* text : {"", " 1", "1 ", "1,5", "1.2.3", "abc", "+", "-", "+-1", "++1", ".",
                           "0x10", "nan", "inf", "-inf", "1e999", "12ms"}) {
    EXPECT_EQ(parseDouble(text), std::nullopt) << text;
  }
}

TEST(NumberText, KnowsNoLocale) {
  const char* const names[] = {"de_DE.UTF-8", "fr_FR.UTF-8", "de_DE"};
  for (const char* name : names) {
    if (std::setlocale(LC_ALL, name) != nullptr) {
      break;
    }
  }
  EXPECT_EQ(fixedText(1234.5, 1), "1234.5");
  EXPECT_EQ(parseDouble("1234.5"), 1234.5);
  std::setlocale(LC_ALL, "C");
}

} // namespace
} // namespace tidewell::test
