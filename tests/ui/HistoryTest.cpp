#include "support/Details.h"
#include "support/Evening.h"
#include "ui/charts/AxisCharts.h"
#include "ui/components/TextLine.h"
#include "ui/detail/RecentReadings.h"

#include <gtest/gtest.h>

#include <QLocale>

#include <limits>

namespace tidewell::test {
namespace {

constexpr int history = 2;

class HistoryTest : public testing::Test, protected Details {
protected:
  [[nodiscard]] std::vector<ReadingRow*> readings() const {
    auto rows = all<ReadingRow>(history);
    std::erase_if(rows, [](const ReadingRow* row) { return row->isHidden(); });
    return rows;
  }
  [[nodiscard]] std::vector<std::string> lines() const {
    std::vector<std::string> texts;
    for (const TextLine* line : all<TextLine>(history)) {
      if (line->isVisible()) {
        texts.push_back(line->text().toStdString());
      }
    }
    return texts;
  }
};

using Texts = std::vector<std::string>;

// Samples whose download is their number in kilobytes, from 1 on.
SnapshotList numbered(int count) {
  SnapshotList list;
  for (int number = 1; number <= count; ++number) {
    list.push_back(std::make_shared<const NetworkSnapshot>(1.7e9 + 60.0 * number, 1'000 * number,
                                                           2'000 * number, 23.6, 1.0, 0.0));
  }
  return list;
}

TEST_F(HistoryTest, SaysThatItCollectsWhileThereIsNothing) {
  open(history);
  EXPECT_EQ(lines(), (Texts{"Speed History",
                            "Collecting data... History will appear here after a few seconds."}));
  EXPECT_FALSE(only<LatencyChart>(history).isVisible());
  sampler.snapshots.set(numbered(1));
  EXPECT_EQ(lines(), (Texts{"Speed History", "Latency Over Time", "Recent Readings"}));
  EXPECT_TRUE(only<LatencyChart>(history).isVisible());
  EXPECT_EQ(readings().size(), 1U);
}

TEST_F(HistoryTest, ListsTheLastTwentyWithTheNewestFirst) {
  sampler.snapshots.set(numbered(35));
  open(history);
  ASSERT_EQ(readings().size(), 20U);
  for (std::size_t index = 0; index < 20; ++index) {
    EXPECT_EQ(readings()[index]->texts()[1].toStdString(), std::to_string(35 - index) + " KB/s");
  }
}

TEST_F(HistoryTest, ShowsTimeRatesAndLatency) {
  sampler.snapshots.set(numbered(3));
  open(history);
  EXPECT_EQ(readings()[0]->texts(), (std::array<QString, 4>{"22:16", "3 KB/s", "6 KB/s", "24 ms"}));
}

TEST_F(HistoryTest, TellsTheTimeInTheUsersLocale) {
  QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
  sampler.snapshots.set(numbered(3));
  open(history);
  EXPECT_EQ(readings()[0]->texts()[0].simplified().replace(QChar(0x202F), ' '), "10:16 PM");
  QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedKingdom));
}

TEST_F(HistoryTest, ShowsWhatIsNotKnownAsNotKnown) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  sampler.snapshots.set({std::make_shared<const NetworkSnapshot>(nan, 0, -1, nan, nan, nan)});
  open(history);
  EXPECT_EQ(readings()[0]->texts(), (std::array<QString, 4>{"--", "0 KB/s", "-0.0 GB/s", "-- ms"}));
}

TEST_F(HistoryTest, FollowsTheSamplesUntilThereAreNoneAgain) {
  sampler.snapshots.set(evening(300));
  open(history);
  EXPECT_EQ(readings().size(), 20U);
  sampler.snapshots.set(numbered(5));
  EXPECT_EQ(readings().size(), 5U);
  sampler.snapshots.set({});
  EXPECT_EQ(lines().size(), 2U);
}

} // namespace
} // namespace tidewell::test
