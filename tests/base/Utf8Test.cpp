#include "base/Utf8.h"

#include <gtest/gtest.h>

#include <string_view>

namespace tidewell::test {
namespace {

using namespace std::string_view_literals;

TEST(Utf8, AcceptsWellFormedText) {
  for (const auto text :
       {""sv, "plain"sv, "\0"sv, "↓12K ↑3K"sv, "\xC2\x80"sv, "\xDF\xBF"sv, "\xE0\xA0\x80"sv,
        "\xED\x9F\xBF"sv, "\xEE\x80\x80"sv, "\xF0\x90\x80\x80"sv, "\xF4\x8F\xBF\xBF"sv}) {
    EXPECT_TRUE(isUtf8(text)) << text;
  }
}

TEST(Utf8, RefusesEverythingElse) {
  for (const auto text : {"\x80"sv, "\xBF"sv, "\xC0\x80"sv, "\xC1\xBF"sv, "\xC2"sv, "\xC2 "sv,
                          "\xE0\x9F\xBF"sv, "\xE2\x86"sv, "\xED\xA0\x80"sv, "\xED\xBF\xBF"sv,
                          "\xF0\x8F\xBF\xBF"sv, "\xF4\x90\x80\x80"sv, "\xF5\x80\x80\x80"sv,
                          "\xF8\x88\x80\x80\x80"sv, "\xFE"sv, "ok\xFF"sv}) {
    EXPECT_FALSE(isUtf8(text));
  }
}

TEST(Utf8, ReplacesEachByteThatIsNotPartOfIt) {
  EXPECT_EQ(validUtf8("plain ↓ 🌊"), "plain ↓ 🌊");
  EXPECT_EQ(validUtf8("\xC0\x80"), "\uFFFD\uFFFD");
  EXPECT_EQ(validUtf8("x\xED\xA0\x80y"), "x\uFFFD\uFFFD\uFFFDy");
  EXPECT_EQ(validUtf8("\xF0\x9F\x8C"), "\uFFFD\uFFFD\uFFFD");
}

} // namespace
} // namespace tidewell::test
