#include "helpers/nettop/NettopText.h"

#include "base/TextPieces.h"
#include "base/Utf8.h"
#include "processes/NettopOutput.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <limits>
#include <string>

namespace tidewell::nettop {
namespace {

ProcessTraffic row(std::string name, std::int32_t process, std::uint64_t received,
                   std::uint64_t sent = 0) {
  return {std::move(name), process, 1000, received, sent};
}

TEST(NettopText, PutsTheHeaviestFirstBelowAHeader) {
  EXPECT_EQ(nettopText({row("light", 7, 1, 2), row("heavy", 8, 5, 6), row("idle", 9, 0, 0)}),
            ",bytes_in,bytes_out,\nheavy.8,5,6,\nlight.7,1,2,\n");
}

TEST(NettopText, IsAHeaderWhenNothingMoved) { EXPECT_EQ(nettopText({}), ",bytes_in,bytes_out,\n"); }

TEST(NettopText, IsReadAsItWasMeant) {
  const auto rows = parseNettopOutput(
      nettopText({row("python3.11", 1, 5, 6), row("a,b\nc.9,1", 2, 7, 8), row("🌊", 3, 1, 1)}));
  ASSERT_EQ(rows.size(), 3U);
  EXPECT_EQ(rows[0], (ProcessUsage{2, "a_b_c_9_1", 7, 8, 15, 15.0 / 28.0}));
  EXPECT_EQ(rows[1], (ProcessUsage{1, "python3_11", 5, 6, 11, 11.0 / 28.0}));
  EXPECT_EQ(rows[2].name, "🌊");
}

TEST(NettopText, TellsItsOwnRowsFromProgramsOfTheirNames) {
  std::vector<ProcessTraffic> rows{{"unknown", 0, ProcessTraffic::nobody, 9, 0},
                                   {"user root", 0, 0, 8, 0}};
  for (const char* name : {"unknown", "(unknown)", "user root"}) {
    rows.push_back(row(name, 7, 1));
  }
  EXPECT_EQ(nettopText(rows), ",bytes_in,bytes_out,\n(unknown).0,9,0,\n(user root).0,8,0,\n"
                              "unknown.7,1,0,\n_unknown_.7,1,0,\nuser root.7,1,0,\n");
  for (std::int32_t process = 8; process <= 300; ++process) {
    rows.push_back(row("unknown", process, 1));
  }
  EXPECT_TRUE(nettopText(rows).starts_with(",bytes_in,bytes_out,\nunknown.7,294,0,\n(unknown).0,9"))
      << "also where rows of one name are joined";
}

TEST(NettopText, JoinsRowsOfOneNameOnlyWhereThereAreTooMany) {
  std::vector<ProcessTraffic> rows;
  for (std::int32_t process = 1; process <= 256; ++process) {
    rows.push_back(row("worker", process, 10));
  }
  EXPECT_EQ(splitAt(nettopText(rows), '\n').size(), 258U);
  rows.push_back(row("worker", 999, 11));
  EXPECT_EQ(nettopText(rows), ",bytes_in,bytes_out,\nworker.999,2571,0,\n");
}

TEST(NettopText, LosesNoByteBeyondItsRows) {
  std::vector<ProcessTraffic> rows;
  for (std::int32_t process = 1; process <= 1000; ++process) {
    rows.push_back(row("p" + std::to_string(process), process, 1000, 1));
  }
  const std::string text = nettopText(rows);
  const auto lines = splitAt(text, '\n');
  ASSERT_EQ(lines.size(), 258U);
  EXPECT_EQ(lines[256], "(others).0,745000,745,");
}

TEST(NettopText, FitsAPipeWhateverTheNames) {
  std::vector<ProcessTraffic> rows;
  for (std::int32_t process = 0; process < 2000; ++process) {
    rows.push_back(row(std::string(300, 'x') + "\xF0\x9F", 2147483647 - process,
                       std::numeric_limits<std::uint64_t>::max(),
                       std::numeric_limits<std::uint64_t>::max()));
    rows.back().name[0] = static_cast<char>('a' + process % 26);
    rows.back().name[1] = static_cast<char>('a' + process / 26 % 26);
    rows.back().name[2] = static_cast<char>('a' + process / 676);
  }
  const std::string text = nettopText(rows);
  EXPECT_LT(text.size(), 32768U);
  EXPECT_TRUE(isUtf8(text));
  EXPECT_EQ(parseNettopOutput(text).size(), 10U) << "and no sum overflows";
}

} // namespace
} // namespace tidewell::nettop
