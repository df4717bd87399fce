#include "format/SteadyLabel.h"

#include "format/SpeedFormatter.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace tidewell::test {
namespace {

// What a font with digits of one width draws, in units in which no sum of the others looks like
// one.
double widthOf(const std::string& text) {
  const std::pair<std::string_view, double> widths[] = {
      {"\u2007", 100.0}, {"\u2008", 31.0}, {"\u2009", 7.0}, {"↓", 1.0}, {"↑", 1.0}};
  double width = 0.0;
  for (std::size_t at = 0; at < text.size();) {
    const std::string_view rest = std::string_view(text).substr(at);
    std::size_t length = 1;
    double own = rest[0] == '.' ? 31.0 : rest[0] == 'K' ? 50.0 : rest[0] == 'M' ? 57.0 : 100.0;
    for (const auto& [letter, letterWidth] : widths) {
      if (rest.starts_with(letter)) {
        length = letter.size();
        own = letterWidth;
      }
    }
    width += own;
    at += length;
  }
  return width;
}

TEST(SteadyLabel, IsAsWideAtEveryRateThatALineHas) {
  const double widest = widthOf(steadyLabel("↓99.9M ↑99.9M"));
  for (const std::int64_t rate : {0, 999, 1'000, 9'499, 12'345, 99'999, 123'456, 999'499, 1'000'000,
                                  9'940'000, 12'000'000, 99'900'000}) {
    const std::string text = SpeedFormatter::formatCompact(rate);
    EXPECT_EQ(widthOf(steadyLabel("↓" + text + " ↑" + text)), widest) << text;
    EXPECT_EQ(widthOf(steadyLabel("↓" + text)), widthOf(steadyLabel("↓99.9M"))) << text;
  }
}

TEST(SteadyLabel, HasTheLettersOfTheText) {
  EXPECT_EQ(steadyLabel("↓12K ↑0K"), "↓\u2007\u2008\u200912K ↑\u2007\u2007\u2008\u20090K");
  EXPECT_EQ(steadyLabel("↓1.5M"), "↓\u20071.5M");
}

TEST(SteadyLabel, LeavesOtherTextsAlone) {
  for (const char* text : {"", "↓-- ↑--", "↓10000M ↑1000K", "↓100.0M", "K", "a b", "↓"}) {
    EXPECT_EQ(steadyLabel(text), text);
  }
}

} // namespace
} // namespace tidewell::test
