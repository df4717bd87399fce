#include "platform/linux/preferences/PreferencesText.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace tidewell::test {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

std::string with(std::string_view text, std::string_view key, const PreferenceValue& value) {
  PreferencesText preferences(text);
  preferences.set(key, value);
  return preferences.text();
}

TEST(PreferencesText, ReadsTheFourTypesAndLeavesOthersAlone) {
  const PreferencesText text("truth = true\nwhole = -3\nreal = 2.5\nword = 'all'\n"
                             "date = 2024-02-29\nlist = [1]\n[table]\nwhole = 4\n");
  EXPECT_TRUE(text.isIntact());
  EXPECT_EQ(text.values(),
            (PreferenceValues{
                {"truth", true}, {"whole", std::int64_t{-3}}, {"real", 2.5}, {"word", "all"s}}));
}

TEST(PreferencesText, AnEmptyTextIsIntact) {
  EXPECT_TRUE(PreferencesText().isIntact());
  EXPECT_TRUE(PreferencesText("").values().empty());
  EXPECT_EQ(with("", "a", true), "a = true\n");
}

TEST(PreferencesText, ChangesTheValueAloneAndKeepsWhatStandsAroundIt) {
  EXPECT_EQ(
      with("# mine\n  refreshInterval =  2.0   # seconds\n\nother = 'x'\n", "refreshInterval", 5.0),
      "# mine\n  refreshInterval =  5.0   # seconds\n\nother = 'x'\n");
  EXPECT_EQ(
      with("\"refreshInterval\" = \"\"\"\ntwo\nlines\"\"\"\r\nz = 1\r\n", "refreshInterval", 5.0),
      "\"refreshInterval\" = 5.0\r\nz = 1\r\n");
  EXPECT_EQ(with("é1 = 1"sv.substr(2), "1", true), "1 = true");
  EXPECT_EQ(with("a = [ 'é', [2] ] # é\n", "a", std::int64_t{1}), "a = 1 # é\n");
  EXPECT_EQ(with("\xEF\xBB\xBF"
                 "a = 1\n",
                 "a", std::int64_t{2}),
            "\xEF\xBB\xBF"
            "a = 2\n");
}

TEST(PreferencesText, AnEqualValueKeepsItsSpelling) {
  EXPECT_EQ(with("a = 5.00", "a", 5.0), "a = 5.00");
  EXPECT_EQ(with("a = 0x10", "a", std::int64_t{16}), "a = 0x10");
  EXPECT_EQ(with("a = nan", "a", std::numeric_limits<double>::quiet_NaN()), "a = nan");
  EXPECT_EQ(with("a = 5", "a", 5.0), "a = 5.0");
}

TEST(PreferencesText, ANewKeyGoesToTheEndOfTheTopLevel) {
  EXPECT_EQ(with("a = 1", "b", true), "a = 1\nb = true\n");
  EXPECT_EQ(with("a = 1\r\n", "b", true), "a = 1\r\nb = true\r\n");
  EXPECT_EQ(with("a = 1\r\nc = ''\r", "b", true), "a = 1\r\nc = ''\r\nb = true\r\n");
  EXPECT_EQ(with("a = 1\n\n# about it\n[table]\nb = 2\n", "b", true),
            "a = 1\nb = true\n\n# about it\n[table]\nb = 2\n");
  EXPECT_EQ(with("# mine\n\n# about it\n[table]\n", "b", true),
            "# mine\nb = true\n\n# about it\n[table]\n");
  EXPECT_EQ(with("[table]\n", "b", true), "b = true\n\n[table]\n");
  EXPECT_EQ(with("a = [\n[1],\n]\n[[list]]\n", "b", true),
            "a = [\n[1],\n]\nb = true\n\n[[list]]\n");
  EXPECT_EQ(with("# only a remark", "b", true), "# only a remark\nb = true\n");
}

TEST(PreferencesText, ANewKeyFindsItsPlaceBehindLinesThatOnlyLookLikeHeaders) {
  std::string text = "a = '''\n";
  for (int line = 0; line < 20; ++line) {
    text += "[x]\n";
  }
  text += "'''\n[table]\nb = 1\n";
  const PreferencesText before(text);
  const PreferencesText after(with(text, "b", true));
  EXPECT_EQ(after.values().at("b"), PreferenceValue(true));
  EXPECT_EQ(after.values().at("a"), before.values().at("a"));
  EXPECT_NE(after.text().find("[table]\nb = 1\n"), std::string::npos);
}

TEST(PreferencesText, WhatIsNotOursStaysByteForByte) {
  const auto top = "moment = 1979-05-27T07:32:00.5-07:30\r\n"
                   "day = 0079-05-07 #\n\n"
                   "  list = [1,\n[inf, 'x' # [\n], {t = 07:32:00}, []]\n"
                   "a.x = 1\n"
                   "'a' . \"z\" = { b = '#}', }\n"
                   "text = \"\"\"a = 1\n\\\"\"\"\"\"\n"s;
  const auto tables = "\n[a]\nb = = 2\nb = 3\n[[a]]\n\xFF"s;
  EXPECT_EQ(with(top + tables, "a", 2.5), top + "a = 2.5\r\n" + tables);
}

TEST(PreferencesText, KeysAndValuesOfEveryKindSurvive) {
  std::string text = "first = 1 # stays\n";
  const PreferenceValues values{{"", "empty key"s},
                                {"a.b", "\" \\ \n \0 é"s},
                                {"odd \"key\"", std::numeric_limits<std::int64_t>::min()},
                                {"plain", 1e300}};
  for (const auto& [key, value] : values) {
    text = with(text, key, value);
  }
  PreferenceValues expected = values;
  expected.emplace("first", std::int64_t{1});
  EXPECT_EQ(PreferencesText(text).values(), expected);
  EXPECT_TRUE(text.starts_with("first = 1 # stays\n"));
}

TEST(PreferencesText, OfABrokenTextEveryReadableLineIsSaved) {
  const PreferencesText text(
      "# mine\nrefreshInterval = = 5\ntrackPerProcess = false\n"
      "bad \xFF = 1\nmonitorInterface = \"eth0\"\r\n[table\nlist = [1\nb = 1 2\n"
      "[table]\nx = 1\nnonsense\n");
  EXPECT_FALSE(text.isIntact());
  EXPECT_EQ(text.values(),
            (PreferenceValues{{"trackPerProcess", false}, {"monitorInterface", "eth0"s}}));
  EXPECT_EQ(text.text(), "# mine\ntrackPerProcess = false\nmonitorInterface = \"eth0\"\r\n"
                         "[table]\nx = 1\nnonsense\n");
}

TEST(PreferencesText, OfTwoLinesForOneKeyTheLaterCounts) {
  const auto text = "a = 1\n'a' = 2\nb.c = 1\nb = 2\n[t]\na = 4\n"sv;
  EXPECT_EQ(PreferencesText(text).values(),
            (PreferenceValues{{"a", std::int64_t{2}}, {"b", std::int64_t{2}}}));
  EXPECT_EQ(with(text, "a", true), "a = 1\n'a' = true\nb.c = 1\nb = 2\n[t]\na = 4\n");
  EXPECT_TRUE(PreferencesText("a = 1\na = [1]\n").values().empty());
}

TEST(PreferencesText, ATextThatIsCutOffAnywhereKeepsTheLinesBefore) {
  const auto whole = "a = 1\nb = \"two\"\nc = [1, 2]\nd = '''\nx\n'''\n"sv;
  for (std::size_t size = 6; size <= whole.size(); ++size) {
    const PreferencesText text(whole.substr(0, size));
    EXPECT_EQ(text.values().at("a"), PreferenceValue(std::int64_t{1})) << size;
    EXPECT_TRUE(PreferencesText(text.text()).isIntact()) << size;
  }
}

TEST(PreferencesText, HostileBytesDoNoHarmAndTakeAValue) {
  const std::array<std::string, 16> texts{
      "[",
      "[\n",
      "[ \n[t",
      "n = [inf]\n",
      std::string(3, '\0'),
      "a = \0 1"s,
      "\xFF\xFE"
      "a\0=\0001\0"s,
      "\xEF\xBB\xBF",
      "\xEF\xBB\xBF\xEF\xBB\xBF"
      "a = 1",
      "é = 1\n\"é\" = 2\n",
      "a = あ\nb = '''\\\n あ'''",
      "a = 1\r",
      "a = 99999999999999999999\nb = 1e999\n",
      "a = \"\\uD800\"\n",
      "= 1\n.a = 1\n[]\n[[]]\n[a\n",
      "a = \"\"\"\"\"\"\"\"\"\n",
  };
  for (const std::string& text : texts) {
    const PreferencesText after(with(text, "refreshInterval", 5.0));
    EXPECT_TRUE(after.isIntact()) << text;
    EXPECT_EQ(after.values().at("refreshInterval"), PreferenceValue(5.0)) << text;
  }
}

std::string repeated(std::string_view part, std::size_t count) {
  std::string text;
  for (std::size_t index = 0; index < count; ++index) {
    text += part;
  }
  return text;
}

TEST(PreferencesText, DeepNestingOfEveryKindDoesNoHarm) {
  constexpr std::size_t deep = 100'000;
  for (const std::string& nested :
       {"n = " + repeated("[", deep), "n = " + repeated("{a=", deep),
        repeated("a.", deep) + "a = 1", "[" + repeated("a.", deep) + "a]",
        "n = " + repeated("{a.a.a.a.a.a.a.a = ", deep), repeated("[[a.b]]\n", deep / 10),
        repeated("[a", deep / 10) + repeated("]", deep / 10)}) {
    const PreferencesText after(with("trackPerProcess = false\n" + nested + "\n", "r", 5.0));
    EXPECT_TRUE(after.isIntact());
    EXPECT_EQ(after.values().at("r"), PreferenceValue(5.0));
    EXPECT_EQ(after.values().at("trackPerProcess"), PreferenceValue(false));
  }
}

} // namespace
} // namespace tidewell::test
