#include "platform/linux/preferences/TomlValue.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tidewell::test {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr std::int64_t lowest = std::numeric_limits<std::int64_t>::min();

TEST(TomlValue, WritesNumbersExactlyAndWithTheirType) {
  const std::vector<std::pair<PreferenceValue, std::string>> texts{
      {true, "true"},      {false, "false"},  {std::int64_t{5}, "5"},
      {5.0, "5.0"},        {-0.0, "-0.0"},    {lowest, "-9223372036854775808"},
      {0.1, "0.1"},        {1e22, "1e+22"},   {5e-324, "5e-324"},
      {-infinity, "-inf"}, {infinity, "inf"}, {-notANumber, "nan"}};
  for (const auto& [value, text] : texts) {
    EXPECT_EQ(tomlText(value), text);
  }
}

TEST(TomlValue, WritesStringsOnOneLineAndKeysBareWhereTheyMayBe) {
  EXPECT_EQ(tomlText("all"s), R"("all")");
  EXPECT_EQ(tomlText("a\"b\\c\n\x7F↓"s), R"("a\"b\\c\u000A\u007F↓")");
  EXPECT_EQ(tomlText("\0"s), R"("\u0000")");
  EXPECT_EQ(tomlText("bad \xFF byte"s), "\"bad \uFFFD byte\"");
  EXPECT_EQ(tomlKey("refreshInterval"), "refreshInterval");
  EXPECT_EQ(tomlKey("a-b_9"), "a-b_9");
  EXPECT_EQ(tomlKey(""), R"("")");
  EXPECT_EQ(tomlKey("a.b"), R"("a.b")");
  EXPECT_EQ(tomlKey("é"), R"("é")");
}

TEST(TomlValue, ReadsEveryFormOfAValueUpToItsEnd) {
  const std::vector<std::pair<std::string, PreferenceValue>> values{
      {"true", true},
      {"+1_000", std::int64_t{1000}},
      {"-9223372036854775808", lowest},
      {"0xdead_BEEF", std::int64_t{0xDEADBEEF}},
      {"0o017", std::int64_t{15}},
      {"0b101", std::int64_t{5}},
      {"2.50", 2.5},
      {"1e3", 1000.0},
      {"-1_0.0_5E-0_1", -1.005},
      {"+inf", infinity},
      {"-inf", -infinity},
      {"-nan", notANumber},
      {R"("a\"\\\b\t\n\f\r\u00e9\u20aC\U0001F30A")", "a\"\\\b\t\n\f\ré€🌊"s},
      {R"('a\')", R"(a\)"s},
      {"''", ""s},
      {"\"\"\"\r\ntwo\r\nlines \\  \n\n  joined\"\"\"\"\"", "two\nlines joined\"\""s},
      {"'''a\n'b' \\'''", "a\n'b' \\"s},
  };
  for (const auto& [text, value] : values) {
    for (const std::string_view after : {"", " # 1", "\r\n"}) {
      const std::string whole = text + std::string(after);
      std::string_view rest = whole;
      const auto found = readTomlValue(rest);
      ASSERT_TRUE(found && found->preference) << whole;
      EXPECT_TRUE(isSame(*found->preference, value)) << whole;
      EXPECT_EQ(rest, after) << whole;
    }
  }
}

TEST(TomlValue, StepsOverWhatHoldsNoPreference) {
  for (std::string_view text : {"1979-05-27 07:32:00Z", "07:32:00.5", "[1,\n'#]', {a = [\n]}]",
                                "{a = {b = \"}\"}}", "[ # ]\n]"}) {
    const auto found = readTomlValue(text);
    EXPECT_TRUE(found && !found->preference && text.empty()) << text;
  }
}

TEST(TomlValue, RefusesWhatIsNotValid) {
  for (std::string_view text :
       {""sv,          "True"sv,     "5 s"sv,     "= 5"sv,         "5."sv,
        ".5"sv,        "05"sv,       "1_"sv,      "_1"sv,          "1__0"sv,
        "1_.0"sv,      "1e"sv,       "1_e5"sv,    "0x"sv,          "0x-5"sv,
        "0X5"sv,       "+0x5"sv,     "0b2"sv,     "+-5"sv,         "1e999"sv,
        "infinity"sv,  "0x_1"sv,     "1,5"sv,     "1979-05"sv,     "9223372036854775808"sv,
        "\"a"sv,       "\"a\nb\""sv, "'a\0'"sv,   "\"\xFF\""sv,    R"("\x41")"sv,
        R"("\u12")"sv, R"("\u")"sv,  "'''a''"sv,  R"("\uD800")"sv, R"("\U00110000")"sv,
        "[1"sv,        "[1}"sv,      "[a = 1]"sv, "{a = 1\n}"sv,   "{a = 1 # }\n"sv,
        "]"sv,         "[']"sv,      "\"\\"sv,    "\"\"\"\\"sv}) {
    const std::string shown(text);
    EXPECT_FALSE(readTomlValue(text)) << shown;
  }
}

} // namespace
} // namespace tidewell::test
