#include "platform/linux/preferences/TomlText.h"

#include "platform/linux/preferences/TomlNesting.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

namespace tidewell::test {
namespace {

using namespace std::string_literals;

TEST(TomlText, NumbersAreExactAndKeepTheirType) {
  EXPECT_EQ(tomlText(std::int64_t{5}), "5");
  EXPECT_EQ(tomlText(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
  EXPECT_EQ(tomlText(5.0), "5.0");
  EXPECT_EQ(tomlText(-0.0), "-0.0");
  EXPECT_EQ(tomlText(0.1), "0.1");
  EXPECT_EQ(tomlText(1e22), "1e+22");
  EXPECT_EQ(tomlText(5e-324), "5e-324");
  EXPECT_EQ(tomlText(std::numeric_limits<double>::infinity()), "inf");
  EXPECT_EQ(tomlText(-std::numeric_limits<double>::infinity()), "-inf");
  EXPECT_EQ(tomlText(-std::numeric_limits<double>::quiet_NaN()), "nan");
  EXPECT_EQ(tomlText(true), "true");
  EXPECT_EQ(tomlText(false), "false");
}

TEST(TomlText, StringsAreQuotedOnOneLine) {
  EXPECT_EQ(tomlText("all"s), R"("all")");
  EXPECT_EQ(tomlText("a\"b\\c\n\x7F↓"s), R"("a\"b\\c\u000A\u007F↓")");
  EXPECT_EQ(tomlText("\0"s), R"("\u0000")");
  EXPECT_EQ(tomlText("bad \xFF byte"s), "\"bad \uFFFD byte\"");
}

TEST(TomlText, KeysAreBareWhereTheyMayBe) {
  EXPECT_EQ(tomlKey("refreshInterval"), "refreshInterval");
  EXPECT_EQ(tomlKey("a-b_9"), "a-b_9");
  EXPECT_EQ(tomlKey(""), R"("")");
  EXPECT_EQ(tomlKey("a.b"), R"("a.b")");
  EXPECT_EQ(tomlKey("é"), R"("é")");
}

TEST(TomlText, BytesThatAreNoUtf8AreReplacedOneByOne) {
  EXPECT_EQ(validUtf8("plain ↓ 🌊"), "plain ↓ 🌊");
  EXPECT_EQ(validUtf8("\xC0\x80"), "\uFFFD\uFFFD");
  EXPECT_EQ(validUtf8("x\xED\xA0\x80y"), "x\uFFFD\uFFFD\uFFFDy");
  EXPECT_EQ(validUtf8("\xF0\x9F\x8C"), "\uFFFD\uFFFD\uFFFD");
}

TEST(TomlNesting, CountsDotsOutsideStringsAndComments) {
  EXPECT_EQ(tomlDots(""), 0U);
  EXPECT_EQ(tomlDots("a.b = 1.5 # . . .\nc = '...' \n[d.e]"), 3U);
  EXPECT_EQ(tomlDots(R"(a = "\"..." . b)"), 1U);
  EXPECT_EQ(tomlDots("a = \"unterminated ...\n. b"), 1U);
  EXPECT_EQ(tomlDots("a = '\\' . b"), 1U);
}

TEST(TomlNesting, KnowsWhereMultiLineStringsEnd) {
  EXPECT_EQ(tomlDots("a = \"\"\"..\n\"..\\\"\"\"\"\"\n."), 1U);
  EXPECT_EQ(tomlDots("a = \"\"\"x\"\"\"\" . b"), 1U);
  EXPECT_EQ(tomlDots("a = '''..'''''.'.'"), 1U);
  EXPECT_EQ(tomlDots("a = '''...\n..."), 0U);
}

} // namespace
} // namespace tidewell::test
