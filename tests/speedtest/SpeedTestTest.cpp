#include "speedtest/NetworkQualityOutput.h"
#include "speedtest/SpeedTestRunner.h"

#include "support/FakeMachine.h"

#include <gtest/gtest.h>

#include <string>

namespace tidewell::test {
namespace {

SpeedTestResult parse(const std::string& output) { return parseNetworkQualityOutput(output, 5.0); }

TEST(NetworkQualityOutput, ReadsCapacitiesAndResponsiveness) {
  EXPECT_EQ(parse("==== SUMMARY ====\n"
                  "Uplink capacity: 1.25 Gbps\n"
                  "Downlink capacity: 245.312 Mbps\n"
                  "Responsiveness: High (2100 RPM)\n"
                  "Idle latency: 20.5 milliseconds\n"),
            (SpeedTestResult{5.0, 245.312, 1250.0, 2100}));
  EXPECT_EQ(parse(""), (SpeedTestResult{5.0, 0.0, 0.0, 0}));
}

TEST(NetworkQualityOutput, ConvertsUnitsByThousands) {
  EXPECT_EQ(parse("Download capacity: 850 Kbps").downloadMbps, 0.85);
  EXPECT_EQ(parse("Download capacity: 9 Kbps").downloadMbps, 0.009); // not 9 * 0.001
  EXPECT_EQ(parse("Upload capacity: 12.5Mbps").uploadMbps, 12.5);
  EXPECT_EQ(parse("UPLINK CAPACITY: 2\t\v \f\rGbps").uploadMbps, 2000.0);
}

TEST(NetworkQualityOutput, KnowsNoOtherUnits) {
  for (const char* unit : {"mbps", "Tbps", "bps", "MBps", "", "M bps"}) {
    EXPECT_EQ(parse(std::string("Uplink capacity: 38.5 ") + unit).uploadMbps, 0.0) << unit;
  }
}

TEST(NetworkQualityOutput, TakesTheFirstNumberThatHasAUnit) {
  for (const auto& [text, megabits] :
       {std::pair(" (4 flows): 100 Mbps, was 90 Mbps", 100.0), std::pair("1.2.3 Mbps", 0.0),
        std::pair(". Mbps", 0.0), std::pair(".5 Mbps", 0.5), std::pair("5. Mbps", 5.0),
        std::pair("-5 Mbps", 5.0)}) {
    EXPECT_EQ(parse(std::string("Downlink capacity") + text).downloadMbps, megabits) << text;
  }
}

TEST(NetworkQualityOutput, LetsALaterLineWin) {
  EXPECT_EQ(parse("Downlink capacity: 100 Mbps\nDownlink capacity: 90 Mbps").downloadMbps, 90.0);
  EXPECT_EQ(parse("Downlink capacity: 100 Mbps\ndownload capacity unknown").downloadMbps, 0.0);
  EXPECT_EQ(parse("Responsiveness: 100 RPM\nresponsiveness?").responsiveness, 0);
}

TEST(NetworkQualityOutput, TakesTheFirstDigitsOfAResponsivenessLine) {
  EXPECT_EQ(parse("Responsiveness: Medium (85.313 milliseconds, 703 RPM)").responsiveness, 85);
  EXPECT_EQ(parse("Responsiveness: 99999999999999999999").responsiveness, 0);
  EXPECT_EQ(parse("RESPONSIVENESS: 12").responsiveness, 12);
}

TEST(NetworkQualityOutput, StopsAtTheFirstTestThatHolds) {
  const auto result = parse("Download capacity and responsiveness and upload capacity: 7 Mbps");
  EXPECT_EQ(result, (SpeedTestResult{5.0, 7.0, 0.0, 0}));
}

TEST(NetworkQualityOutput, HasTheReasonOfAFailure) {
  EXPECT_EQ(networkQualityFailure("Downlink capacity: 5 Mbps\nFailure: no server\n"), "no server");
  EXPECT_EQ(networkQualityFailure("Failure: first\nFailure: second"), "second");
  EXPECT_EQ(networkQualityFailure(""), "");
  EXPECT_EQ(networkQualityFailure("failure: x\n Failure: x\nFailure:x"), "");
}

TEST(NetworkQualityOutput, HasAReasonThatIsSafeToShow) {
  EXPECT_EQ(networkQualityFailure("Failure: a\x1b[31mb\xe2\x80\xae\xff"),
            "a\xef\xbf\xbd[31mb\xef\xbf\xbd\xef\xbf\xbd");
  EXPECT_EQ(networkQualityFailure("Failure: " + std::string(5000, 'x')).size(), longestFailure);
}

class SpeedTestRunnerTest : public testing::Test {
protected:
  SpeedTestRunnerTest() { machine.children.usual = {"Downlink capacity: 100 Mbps", 20.0}; }

  FakeMachine machine;
  std::shared_ptr<SpeedTestRunner> runner = std::make_shared<SpeedTestRunner>(machine.platform);
};

TEST_F(SpeedTestRunnerTest, PublishesTheResultWhenTheToolIsDoneBeforeItIsIdle) {
  std::vector<std::string> order;
  const auto result = runner->lastResult.subscribe(
      [&](const auto& now) { order.emplace_back(now ? "result" : "none"); });
  const auto running =
      runner->isRunning.subscribe([&](bool now) { order.emplace_back(now ? "running" : "idle"); });
  runner->run();
  EXPECT_TRUE(runner->isRunning.get());
  machine.scheduler.advance(19.0);
  EXPECT_EQ(order, (std::vector<std::string>{"none", "idle", "running"}));
  machine.scheduler.advance(2.0);
  EXPECT_EQ(order, (std::vector<std::string>{"none", "idle", "running", "result", "idle"}));
  EXPECT_EQ(runner->lastResult.get()->downloadMbps, 100.0);
  EXPECT_EQ(runner->lastResult.get()->timestamp, machine.clock.now() - 1.0);
  EXPECT_EQ(machine.children.runs, (std::vector<ToolCall>{{Tool::lineTest, {}, 0.0}}));
}

TEST_F(SpeedTestRunnerTest, StartsOneTestWhenAskedTwice) {
  runner->run();
  runner->run();
  machine.scheduler.advance(60.0);
  EXPECT_EQ(machine.children.runs.size(), 1U);
  runner->run();
  machine.scheduler.advance(60.0);
  EXPECT_EQ(machine.children.runs.size(), 2U);
}

TEST_F(SpeedTestRunnerTest, ForgetsAnEarlierResultWhenTheToolCannotStart) {
  runner->run();
  machine.scheduler.advance(60.0);
  machine.children.usual = {std::nullopt, 0.0};
  runner->run();
  machine.scheduler.advance(1.0);
  EXPECT_EQ(runner->lastResult.get(), std::nullopt);
  EXPECT_FALSE(runner->isRunning.get());
}

TEST_F(SpeedTestRunnerTest, KeepsTheLastMeasurementWhenALaterTestFails) {
  const auto runOnce = [this] {
    runner->run();
    machine.scheduler.advance(60.0);
  };
  EXPECT_EQ(runner->lastMeasured.get(), std::nullopt);
  runOnce();
  const auto measured = runner->lastResult.get();
  EXPECT_EQ(runner->lastMeasured.get(), measured);
  EXPECT_EQ(runner->failure.get(), "");

  machine.children.usual = {"Failure: the server cannot be reached\n", 1.0};
  runOnce();
  ASSERT_TRUE(runner->lastResult.get());
  EXPECT_FALSE(hasMeasured(*runner->lastResult.get()));
  EXPECT_EQ(runner->lastMeasured.get(), measured);
  EXPECT_EQ(runner->failure.get(), "the server cannot be reached");
  EXPECT_EQ(&shownResult(*runner), &runner->lastMeasured.get());

  machine.children.usual = {"", 1.0};
  runOnce();
  EXPECT_EQ(runner->failure.get(), "nothing was measured");

  machine.children.usual = {std::nullopt, 0.0};
  runOnce();
  EXPECT_EQ(runner->lastMeasured.get(), measured);
  EXPECT_EQ(runner->failure.get(), "the measuring program could not be started");

  // A direction alone is a measurement.
  machine.children.usual = {"Uplink capacity: 5 Mbps\nFailure: the line moves nothing", 1.0};
  runOnce();
  EXPECT_EQ(runner->lastMeasured.get()->uploadMbps, 5.0);
  EXPECT_EQ(runner->failure.get(), "");
  EXPECT_EQ(&shownResult(*runner), &runner->lastResult.get());
}

TEST_F(SpeedTestRunnerTest, TakesOutputThatIsNoTextAsEmpty) {
  machine.children.usual = {"Downlink capacity: 100 Mbps\xFF", 0.0};
  runner->run();
  machine.scheduler.advance(1.0);
  ASSERT_TRUE(runner->lastResult.get());
  EXPECT_EQ(runner->lastResult.get()->downloadMbps, 0.0);
}

TEST_F(SpeedTestRunnerTest, PublishesNothingOnceItIsGone) {
  runner->run();
  machine.scheduler.advance(5.0);
  const std::weak_ptr<SpeedTestRunner> weak = runner;
  runner.reset();
  machine.scheduler.advance(60.0);
  EXPECT_TRUE(weak.expired());
}

} // namespace
} // namespace tidewell::test
