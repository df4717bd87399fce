#include "support/Details.h"
#include "support/ImageComparison.h"
#include "support/Scene.h"
#include "ui/charts/AxisCharts.h"
#include "ui/components/Buttons.h"
#include "ui/components/Spinner.h"
#include "ui/components/TextLine.h"
#include "ui/components/ValueRow.h"
#include "ui/detail/RecentReadings.h"
#include "ui/tokens/TWColor.h"

#include <gtest/gtest.h>

#include <QLocale>
#include <QtTest/QTest>

#include <limits>

namespace tidewell::test {
namespace {

constexpr int diagnostics = 3;
const SpeedTestResult evenResult{1'700'000'000.0, 245.64, 19.25, 812};

class DiagnosticsTest : public testing::Test, protected Details {
protected:
  void SetUp() override { open(diagnostics); }

  [[nodiscard]] const ValueRow& row(std::size_t index) const {
    return *all<ValueRow>(diagnostics).at(index);
  }
  [[nodiscard]] std::vector<std::string> shown(std::size_t first, std::size_t count) const {
    std::vector<std::string> texts;
    for (std::size_t index = first; index < first + count; ++index) {
      texts.push_back((row(index).key() + u'|' + row(index).value()).toStdString());
    }
    return texts;
  }
  [[nodiscard]] Texts lines() const { return linesIn(*pane(diagnostics).widget()); }
  [[nodiscard]] TextButton& runNow() const { return only<TextButton>(diagnostics); }
};

TEST_F(DiagnosticsTest, TellsWhetherThereIsAConnection) {
  EXPECT_EQ(shown(0, 1), Texts{"Status|Connected"});
  EXPECT_EQ(row(0).color(), TWColor::green);
  monitor.isConnected.set(false);
  EXPECT_EQ(shown(0, 1), Texts{"Status|Disconnected"});
  EXPECT_EQ(row(0).color(), TWColor::red);
}

TEST_F(DiagnosticsTest, ShowsTheDetailsAsTheyAreDelivered) {
  EXPECT_EQ(shown(1, 6), (Texts{"Interface|en0", "Network|Unknown", "Local IP|--", "Public IP|--",
                                "DNS Server|--", "Interface Type|Wi-Fi"}));
  monitor.connectionInfo.set({"Riverside", "Ethernet (eth0)",
                              ConnectionInfo::InterfaceType::ethernet, "192.168.1.20",
                              "203.0.113.77", "192.168.1.1", std::nullopt});
  EXPECT_EQ(shown(1, 6),
            (Texts{"Interface|Ethernet (eth0)", "Network|Riverside", "Local IP|192.168.1.20",
                   "Public IP|203.0.113.77", "DNS Server|192.168.1.1", "Interface Type|Ethernet"}));
  for (std::size_t index = 1; index < 7; ++index) {
    EXPECT_EQ(row(index).color(), TWColor::text);
  }
}

TEST_F(DiagnosticsTest, NamesEveryKindOfLink) {
  using Type = ConnectionInfo::InterfaceType;
  for (const auto& [type, name] :
       std::vector<std::pair<Type, const char*>>{{Type::wifi, "Wi-Fi"},
                                                 {Type::ethernet, "Ethernet"},
                                                 {Type::cellular, "Cellular"},
                                                 {Type::other, "Other"}}) {
    monitor.connectionInfo.mutate(
        [kind = type](ConnectionInfo& info) { info.interfaceType = kind; });
    EXPECT_EQ(row(6).value(), name);
  }
}

struct Judged {
  Published<double>& figure;
  std::size_t row;
  double value;
  const char* text;
  QColor color;
};

TEST_F(DiagnosticsTest, JudgesLatencyJitterAndPacketLoss) {
  auto& latency = sampler.latencyMs;
  auto& jitter = sampler.jitterMs;
  auto& loss = sampler.packetLossPercent;
  for (const auto& [figure, index, value, text, color] :
       std::vector<Judged>{{latency, 7, 0.0, "Latency|0.0 ms", TWColor::green},
                           {latency, 7, 49.99, "Latency|50.0 ms", TWColor::green},
                           {latency, 7, 50.0, "Latency|50.0 ms", TWColor::yellow},
                           {latency, 7, 99.9, "Latency|99.9 ms", TWColor::yellow},
                           {latency, 7, 100.0, "Latency|100.0 ms", TWColor::red},
                           {latency, 7, nan, "Latency|-- ms", TWColor::red},
                           {latency, 7, infinite, "Latency|-- ms", TWColor::red},
                           {jitter, 8, 4.99, "Jitter|5.0 ms", TWColor::green},
                           {jitter, 8, 5.0, "Jitter|5.0 ms", TWColor::yellow},
                           {jitter, 8, 19.9, "Jitter|19.9 ms", TWColor::yellow},
                           {jitter, 8, 20.0, "Jitter|20.0 ms", TWColor::red},
                           {loss, 9, 0.5, "Packet Loss|0.5%", TWColor::green},
                           {loss, 9, 1.0, "Packet Loss|1.0%", TWColor::yellow},
                           {loss, 9, 4.9, "Packet Loss|4.9%", TWColor::yellow},
                           {loss, 9, 5.0, "Packet Loss|5.0%", TWColor::red},
                           {loss, 9, 100.0, "Packet Loss|100.0%", TWColor::red}}) {
    figure.set(value);
    EXPECT_EQ(shown(index, 1), Texts{text});
    EXPECT_EQ(row(index).color(), color) << text;
  }
}

TEST_F(DiagnosticsTest, OffersASpeedTestWhileNoneHasRun) {
  EXPECT_EQ(lines(), (Texts{"Network Diagnostics", "Connection", "Performance", "Speed Test",
                            "No speed test run yet."}));
  EXPECT_TRUE(runNow().isVisible());
  EXPECT_EQ(runNow().text(), "Run Now");
  EXPECT_FALSE(row(10).isVisible());
  runNow().click();
  EXPECT_EQ(testsRun, 1);
}

TEST_F(DiagnosticsTest, SaysThatASpeedTestRunsAndOffersNoOther) {
  for (const bool hasResult : {false, true}) {
    speedTest.lastResult.set(hasResult ? std::optional(evenResult) : std::nullopt);
    speedTest.isRunning.set(true);
    EXPECT_EQ(lines().back(), "Running speed test...");
    EXPECT_TRUE(only<Spinner>(diagnostics).isTicking());
    EXPECT_FALSE(runNow().isVisible());
    EXPECT_FALSE(row(10).isVisible());
    speedTest.isRunning.set(false);
    EXPECT_FALSE(only<Spinner>(diagnostics).isTicking());
  }
}

TEST_F(DiagnosticsTest, ShowsTheResultAndOffersAnotherTest) {
  speedTest.lastResult.set(evenResult);
  EXPECT_EQ(lines().back(), "Speed Test");
  EXPECT_EQ(shown(10, 4), (Texts{"Download|245.6 Mbps", "Upload|19.2 Mbps",
                                 "Responsiveness|812 RPM", "Tested At|22:13"}));
  for (std::size_t index = 10; index < 14; ++index) {
    EXPECT_TRUE(row(index).isVisible());
    EXPECT_EQ(row(index).color(), TWColor::text);
  }
  runNow().click();
  EXPECT_EQ(testsRun, 1);
}

TEST_F(DiagnosticsTest, CallsAFailedTestFailedAndKeepsTheLastMeasurement) {
  speedTest.lastResult.set(SpeedTestResult{1'700'000'600.0, 0.0, 0.0, 0});
  speedTest.failure.set("no server");
  EXPECT_EQ(lines().back(), "Speed test failed: no server");
  EXPECT_FALSE(row(10).isVisible());
  EXPECT_TRUE(runNow().isVisible());

  speedTest.lastMeasured.set(evenResult);
  EXPECT_EQ(lines().back(), "Speed test failed: no server");
  EXPECT_TRUE(row(10).isVisible());
  EXPECT_EQ(shown(10, 4), (Texts{"Download|245.6 Mbps", "Upload|19.2 Mbps",
                                 "Responsiveness|812 RPM", "Tested At|22:13"}));
  speedTest.isRunning.set(true);
  EXPECT_EQ(lines().back(), "Running speed test...");

  speedTest.lastResult.set(std::nullopt); // it could not be started
  speedTest.failure.set("no program");
  speedTest.isRunning.set(false);
  EXPECT_EQ(lines().back(), "Speed test failed: no program");
  EXPECT_TRUE(row(10).isVisible());
}

TEST_F(DiagnosticsTest, HoldsAbsurdResults) {
  speedTest.lastResult.set(
      SpeedTestResult{nan, nan, infinite, std::numeric_limits<std::int64_t>::min()});
  EXPECT_EQ(shown(10, 4), (Texts{"Download|-- Mbps", "Upload|-- Mbps",
                                 "Responsiveness|-9223372036854775808 RPM", "Tested At|--"}));
}

TEST_F(DiagnosticsTest, OffersNoSpeedTestWhileTheResidentIsGone) {
  const std::string stopped = "Tidewell has stopped. Speed tests can run when it is back.";
  view->activateWindow();
  runNow().setFocus(Qt::TabFocusReason);
  const QImage before = picture(runNow());
  for (const bool hasResult : {false, true}) {
    speedTest.lastResult.set(hasResult ? std::optional(evenResult) : std::nullopt);
    for (const bool wasRunning : {false, true}) {
      speedTest.isRunning.set(wasRunning);
      isThere.set(false);
      EXPECT_EQ(lines().back(), stopped);
      EXPECT_EQ(row(10).isVisible(), hasResult);
      EXPECT_TRUE(runNow().isVisible());
      EXPECT_NE(picture(runNow()), before);
      EXPECT_EQ(runNow().accessibleDescription().toStdString(), stopped);
      EXPECT_FALSE(only<Spinner>(diagnostics).isTicking());
      runNow().click();
      speedTest.isRunning.set(false);
      isThere.set(true);
      EXPECT_EQ(lines().back(), hasResult ? "Speed Test" : "No speed test run yet.");
      EXPECT_TRUE(runNow().hasFocus()) << "the keyboard is back at the button";
    }
  }
  EXPECT_EQ(testsRun, 0);
  runNow().click();
  EXPECT_EQ(testsRun, 1);
}

TEST_F(DiagnosticsTest, GivesTheKeyboardBackToTheButton) {
  view->activateWindow();
  runNow().setFocus(Qt::TabFocusReason);
  ASSERT_TRUE(runNow().hasFocus());
  speedTest.isRunning.set(true);
  speedTest.isRunning.set(false);
  EXPECT_TRUE(runNow().hasFocus());
}

constexpr int history = 2;

class HistoryTest : public testing::Test, protected Details {
protected:
  [[nodiscard]] std::vector<ReadingRow*> readings() const {
    auto rows = all<ReadingRow>(history);
    std::erase_if(rows, [](const ReadingRow* row) { return row->isHidden(); });
    return rows;
  }
  [[nodiscard]] Texts lines() const { return linesIn(*pane(history).widget()); }
};

// Samples with downloads of 1, 2, 3 ... kilobytes per second.
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
