#include "format/SpeedFormatter.h"
#include "processes/ProcessUsage.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace tidewell::test {
namespace {

constexpr auto leastRate = std::numeric_limits<std::int64_t>::min();
constexpr auto mostRate = std::numeric_limits<std::int64_t>::max();

TEST(SpeedFormatter, WritesRatesWithTheirUnit) {
  const std::pair<std::int64_t, const char*> rows[] = {{0, "0 KB/s"},
                                                       {999, "0 KB/s"},
                                                       {1'000, "1 KB/s"},
                                                       {1'499, "1 KB/s"},
                                                       {1'500, "2 KB/s"},
                                                       {2'500, "2 KB/s"},
                                                       {999'499, "999 KB/s"},
                                                       {999'500, "1000 KB/s"},
                                                       {1'000'000, "1.0 MB/s"},
                                                       {1'234'567, "1.2 MB/s"},
                                                       {99'999'999, "100.0 MB/s"},
                                                       {100'000'000, "100 MB/s"},
                                                       {999'999'999, "1000 MB/s"},
                                                       {1'000'000'000, "1.0 GB/s"},
                                                       {10'000'000'000, "10.0 GB/s"},
                                                       {mostRate, "9223372036.9 GB/s"},
                                                       {-1, "-0.0 GB/s"},
                                                       {-1'000, "-0.0 GB/s"},
                                                       {-2'500'000'000, "-2.5 GB/s"},
                                                       {leastRate, "-9223372036.9 GB/s"}};
  for (const auto& [rate, text] : rows) {
    EXPECT_EQ(SpeedFormatter::format(rate), text) << rate;
  }
}

TEST(SpeedFormatter, WritesCompactRatesWithALetter) {
  const std::pair<std::int64_t, const char*> rows[] = {{0, "0K"},
                                                       {999, "0K"},
                                                       {1'000, "1K"},
                                                       {1'499, "1K"},
                                                       {1'500, "2K"},
                                                       {2'500, "2K"},
                                                       {999'499, "999K"},
                                                       {999'500, "1000K"},
                                                       {1'000'000, "1.0M"},
                                                       {1'234'567, "1.2M"},
                                                       {99'999'999, "100.0M"},
                                                       {100'000'000, "100M"},
                                                       {999'999'999, "1000M"},
                                                       {1'000'000'000, "1000M"},
                                                       {1'250'000'000, "1250M"},
                                                       {-1'000, "-0M"},
                                                       {-1'500'000, "-2M"},
                                                       {mostRate, "9223372036855M"}};
  for (const auto& [rate, text] : rows) {
    EXPECT_EQ(SpeedFormatter::formatCompact(rate), text) << rate;
  }
}

TEST(SpeedFormatter, WritesMegabitsAsABareNumber) {
  const std::pair<std::int64_t, const char*> rows[] = {
      {0, "0.0"},          {62'500, "0.5"},      {124'999, "1.0"},    {125'000, "1.00"},
      {1'234'567, "9.88"}, {1'249'999, "10.00"}, {1'250'000, "10.0"}, {12'345'678, "98.8"},
      {12'500'000, "100"}, {-125'000, "-1.0"},   {1, "0.0"},          {mostRate, "73786976294838"}};
  for (const auto& [rate, text] : rows) {
    EXPECT_EQ(SpeedFormatter::formatMbps(rate), text) << rate;
  }
}

TEST(ProcessUsageFormat, WritesRatesWithoutAFloorOrAGigabyteStep) {
  const std::pair<std::int64_t, const char*> rows[] = {{0, "0 KB/s"},
                                                       {499, "0 KB/s"},
                                                       {999, "1 KB/s"},
                                                       {999'999, "1000 KB/s"},
                                                       {1'000'000, "1.0 MB/s"},
                                                       {2'500'000, "2.5 MB/s"},
                                                       {-5, "-0 KB/s"},
                                                       {5'000'000'000, "5000.0 MB/s"},
                                                       {-2'000'000, "-2000 KB/s"}};
  for (const auto& [rate, text] : rows) {
    EXPECT_EQ(ProcessUsage::formatBytes(rate), text) << rate;
  }
}

TEST(ProcessUsageFormat, WritesTotalsInMegabytesAndGigabytes) {
  const std::pair<std::int64_t, const char*> rows[] = {{0, "0 MB"},
                                                       {499'999, "0 MB"},
                                                       {500'000, "0 MB"},
                                                       {1'500'000, "2 MB"},
                                                       {999'999'999, "1000 MB"},
                                                       {1'000'000'000, "1.0 GB"},
                                                       {2'345'678'901, "2.3 GB"},
                                                       {-1'000'000'000, "-1000 MB"}};
  for (const auto& [amount, text] : rows) {
    EXPECT_EQ(ProcessUsage::formatBytesTotal(amount), text) << amount;
  }
}

} // namespace
} // namespace tidewell::test
