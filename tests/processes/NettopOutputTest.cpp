#include "processes/NettopOutput.h"

#include <gtest/gtest.h>

#include <string>

namespace tidewell::test {
namespace {

std::vector<ProcessUsage> parseLines(const std::string& lines) {
  return parseNettopOutput("header\n" + lines);
}

TEST(NettopOutput, AddsUpSortsAndShares) {
  const auto rows = parseLines("browser.812,10485760,204800,\n"
                               "browser.955,1048576,0,\n"
                               "kernel_task.0,999999,999999,\n"
                               "com.example.agent.412,300,200,\n"
                               "idle.77,0,0,\n"
                               "syncd.301, 2048 ,x,\n");
  ASSERT_EQ(rows.size(), 3U);
  EXPECT_EQ(rows[0],
            (ProcessUsage{812, "browser", 11534336, 204800, 11739136, 11739136.0 / 11741684.0}));
  EXPECT_EQ(rows[1], (ProcessUsage{301, "syncd", 2048, 0, 2048, 2048.0 / 11741684.0}));
  EXPECT_EQ(rows[2], (ProcessUsage{0, "com", 300, 200, 500, 500.0 / 11741684.0}));
}

TEST(NettopOutput, SkipsTheFirstLineWhateverItSays) {
  EXPECT_TRUE(parseNettopOutput("").empty());
  EXPECT_TRUE(parseNettopOutput("a.1,5,5,").empty());
  EXPECT_EQ(parseNettopOutput("a.1,5,5,\nb.2,5,5,").size(), 1U);
}

TEST(NettopOutput, NeedsThreePieces) {
  EXPECT_TRUE(parseLines("a.1,5").empty());
  for (const char* line : {"a.1,5,", "a.1,5,0", "a.1,5,0,9,,x"}) {
    const auto rows = parseLines(line);
    ASSERT_EQ(rows.size(), 1U) << line;
    EXPECT_EQ(rows[0].downloadBytesPerSec, 5);
    EXPECT_EQ(rows[0].uploadBytesPerSec, 0);
  }
}

TEST(NettopOutput, NeedsANameAndAnIdentifier) {
  for (const char* line : {"launchd,10,10", ".77,10,10", "kernel.,1,1", "..,1,1", ",1,1"}) {
    EXPECT_TRUE(parseLines(line).empty()) << line;
  }
  const auto rows = parseLines("a..1,10,10");
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_EQ(rows[0].name, "a");
  EXPECT_EQ(rows[0].id, 1);
}

TEST(NettopOutput, TakesAnIdentifierThatIsNoNumberAsZero) {
  for (const char* line : {"a.x,1,1", "a.99999999999,1,1", "a. 5,1,1", "a.5 ,1,1"}) {
    EXPECT_EQ(parseLines(line).at(0).id, 0) << line;
  }
  EXPECT_EQ(parseLines("a.-5,1,1").at(0).id, -5);
  EXPECT_EQ(parseLines("a.+5,1,1").at(0).id, 5);
  EXPECT_EQ(parseLines(" a b .5,1,1").at(0).name, " a b ") << "names are not trimmed";
}

TEST(NettopOutput, ReadsSignedNumbersBetweenBlanks) {
  const auto rows = parseLines("a.1,\t +7 , 9\t");
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_EQ(rows[0].downloadBytesPerSec, 7);
  EXPECT_EQ(rows[0].uploadBytesPerSec, 9);
  for (const char* line : {"a.1,1 2,3", "a.1,0x9,3", "a.1,1e3,3", "a.1,99999999999999999999,3",
                           "a.1,,3", "a.1,+-1,3", "a.1,\r4,3"}) {
    EXPECT_EQ(parseLines(line).at(0).downloadBytesPerSec, 0) << line;
  }
}

TEST(NettopOutput, KeepsARowWithTrafficInOneDirection) {
  EXPECT_TRUE(parseLines("a.1,-5,0").empty());
  const auto rows = parseLines("a.1,-5,3");
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_EQ(rows[0].downloadBytesPerSec, -5);
  EXPECT_EQ(rows[0].totalBytes, -2);
  EXPECT_EQ(rows[0].usagePercent, 0.0);
}

TEST(NettopOutput, HasNoSharesWhenNothingRemains) {
  EXPECT_EQ(parseLines("a.1,5,-5").at(0).usagePercent, 0.0);
  EXPECT_EQ(parseLines("a.1,1,0").at(0).usagePercent, 1.0) << "one byte is something";
}

TEST(NettopOutput, ComparesNamesExactly) {
  EXPECT_TRUE(parseLines("kernel_task.1,5,5\nmDNSResponder.2,5,5").empty());
  EXPECT_EQ(parseLines("Kernel_task.1,5,5\nmdnsresponder.2,5,5").size(), 2U);
}

TEST(NettopOutput, KeepsTheFirstIdentifierOfAName) {
  const auto rows = parseLines("a.7,1,1\na.8,2,2");
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_EQ(rows[0].id, 7);
  EXPECT_EQ(rows[0].totalBytes, 6);
}

TEST(NettopOutput, CutsToTenAfterSharingAmongAll) {
  std::string lines;
  for (int index = 1; index <= 12; ++index) {
    lines += "p" + std::to_string(index) + "." + std::to_string(index) + "," +
             std::to_string(index) + ",0,\n";
  }
  const auto rows = parseLines(lines);
  ASSERT_EQ(rows.size(), 10U);
  EXPECT_EQ(rows.front().name, "p12");
  EXPECT_EQ(rows.back().name, "p3");
  EXPECT_EQ(rows.front().usagePercent, 12.0 / 78.0);
}

TEST(NettopOutputDeathTest, AbortsWhenASumOverflows) {
  EXPECT_DEATH(static_cast<void>(parseLines("a.1,9223372036854775807,1")), "arithmetic overflow");
  EXPECT_DEATH(static_cast<void>(parseLines("a.1,9223372036854775807,0\na.2,1,0")),
               "arithmetic overflow");
}

} // namespace
} // namespace tidewell::test
