#include "support/Details.h"
#include "ui/components/Buttons.h"
#include "ui/components/Spinner.h"
#include "ui/components/TextLine.h"
#include "ui/components/ValueRow.h"
#include "ui/tokens/TWColor.h"

#include <gtest/gtest.h>

#include <QtTest/QTest>

#include <limits>

namespace tidewell::test {
namespace {

constexpr int diagnostics = 3;
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinite = std::numeric_limits<double>::infinity();
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
  [[nodiscard]] std::vector<std::string> lines() const {
    std::vector<std::string> texts;
    for (const TextLine* line : all<TextLine>(diagnostics)) {
      if (line->isVisible()) {
        texts.push_back(line->text().toStdString());
      }
    }
    return texts;
  }
  [[nodiscard]] TextButton& runNow() const { return only<TextButton>(diagnostics); }
};

using Texts = std::vector<std::string>;

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

TEST_F(DiagnosticsTest, CutsLongValuesAndTellsThemInFull) {
  const std::string name = std::string(200, 'W') + "end";
  monitor.connectionInfo.mutate([&](ConnectionInfo& info) { info.networkName = name; });
  Panel::settle();
  EXPECT_EQ(row(2).toolTip().toStdString(), name);
  EXPECT_EQ(row(2).accessibleName().toStdString(), "Network " + name);
}

struct Judged {
  double value;
  const char* text;
  QColor color;
};

TEST_F(DiagnosticsTest, JudgesLatency) {
  for (const auto& [value, text, color] :
       std::vector<Judged>{{0.0, "Latency|0.0 ms", TWColor::green},
                           {49.99, "Latency|50.0 ms", TWColor::green},
                           {50.0, "Latency|50.0 ms", TWColor::yellow},
                           {99.9, "Latency|99.9 ms", TWColor::yellow},
                           {100.0, "Latency|100.0 ms", TWColor::red},
                           {nan, "Latency|-- ms", TWColor::red},
                           {infinite, "Latency|-- ms", TWColor::red}}) {
    sampler.latencyMs.set(value);
    EXPECT_EQ(shown(7, 1), Texts{text});
    EXPECT_EQ(row(7).color(), color) << value;
  }
}

TEST_F(DiagnosticsTest, JudgesJitter) {
  for (const auto& [value, text, color] :
       std::vector<Judged>{{4.99, "Jitter|5.0 ms", TWColor::green},
                           {5.0, "Jitter|5.0 ms", TWColor::yellow},
                           {19.9, "Jitter|19.9 ms", TWColor::yellow},
                           {20.0, "Jitter|20.0 ms", TWColor::red}}) {
    sampler.jitterMs.set(value);
    EXPECT_EQ(shown(8, 1), Texts{text});
    EXPECT_EQ(row(8).color(), color) << value;
  }
}

TEST_F(DiagnosticsTest, JudgesPacketLoss) {
  for (const auto& [value, text, color] :
       std::vector<Judged>{{0.5, "Packet Loss|0.5%", TWColor::green},
                           {1.0, "Packet Loss|1.0%", TWColor::yellow},
                           {4.9, "Packet Loss|4.9%", TWColor::yellow},
                           {5.0, "Packet Loss|5.0%", TWColor::red},
                           {100.0, "Packet Loss|100.0%", TWColor::red}}) {
    sampler.packetLossPercent.set(value);
    EXPECT_EQ(shown(9, 1), Texts{text});
    EXPECT_EQ(row(9).color(), color) << value;
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

TEST_F(DiagnosticsTest, HoldsAbsurdResults) {
  speedTest.lastResult.set(
      SpeedTestResult{nan, nan, infinite, std::numeric_limits<std::int64_t>::min()});
  EXPECT_EQ(shown(10, 4), (Texts{"Download|-- Mbps", "Upload|-- Mbps",
                                 "Responsiveness|-9223372036854775808 RPM", "Tested At|--"}));
}

TEST_F(DiagnosticsTest, GivesTheKeyboardBackToTheButton) {
  view->activateWindow();
  runNow().setFocus(Qt::TabFocusReason);
  ASSERT_TRUE(runNow().hasFocus());
  speedTest.isRunning.set(true);
  speedTest.isRunning.set(false);
  EXPECT_TRUE(runNow().hasFocus());
}

} // namespace
} // namespace tidewell::test
