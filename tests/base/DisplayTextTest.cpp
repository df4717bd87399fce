#include "base/DisplayText.h"

#include "base/Utf8.h"

#include <gtest/gtest.h>

#include <random>

namespace tidewell::test {
namespace {

using namespace std::string_view_literals;

TEST(DisplayText, KeepsWhateverCanBeShown) {
  for (const auto text : {""sv, "Harbour"sv, "Caf\u00E9 \u6E2F\u53E3 \U0001F6A2"sv,
                          "<b>free</b> & \"fast\" wifi;"sv, "\u05E9\u05DC\u05D5\u05DD"sv}) {
    EXPECT_EQ(displayText(text), text);
  }
}

TEST(DisplayText, ReplacesControlsAndMarksOfDirection) {
  EXPECT_EQ(displayText("a\nb\0c\x1B[31m\x7F"sv), "a\uFFFDb\uFFFDc\uFFFD[31m\uFFFD");
  EXPECT_EQ(displayText("\xC2\x85\xC2\x9F"), "\uFFFD\uFFFD") << "C1";
  EXPECT_EQ(displayText("safe\u202Eelif"), "safe\uFFFDelif");
  EXPECT_EQ(displayText("\u200F\u2066\u2029\u061C"), "\uFFFD\uFFFD\uFFFD\uFFFD");
}

TEST(DisplayText, ReplacesEachByteThatBelongsToNoCharacter) {
  EXPECT_EQ(displayText("\xFF"), "\uFFFD");
  EXPECT_EQ(displayText("a\xC3"), "a\uFFFD") << "cut off";
  EXPECT_EQ(displayText("\xC3("), "\uFFFD(");
  EXPECT_EQ(displayText("\xC0\x80"), "\uFFFD\uFFFD") << "overlong";
  EXPECT_EQ(displayText("\xED\xA0\x80"), "\uFFFD\uFFFD\uFFFD") << "surrogate";
}

TEST(DisplayText, MakesTextOfAnyBytes) {
  std::mt19937 random(1);
  for (int round = 0; round < 20'000; ++round) {
    std::string bytes(random() % 33, '\0');
    for (char& byte : bytes) {
      byte = static_cast<char>(random());
    }
    const std::string text = displayText(bytes);
    EXPECT_TRUE(isUtf8(text));
    EXPECT_EQ(displayText(text), text);
    EXPECT_EQ(text.find_first_of("\n\r\t\x1B"), std::string::npos);
  }
}

} // namespace
} // namespace tidewell::test
