#include "sampling/LatencyProbe.h"

#include "support/Awaiting.h"
#include "support/FakeMachine.h"

#include <gtest/gtest.h>

#include <string>

namespace tidewell::test {
namespace {

TEST(PingOutput, GivesTheFirstTimeBeforeASpace) {
  EXPECT_EQ(LatencyProbe::parseOutput("64 bytes from 192.0.2.1: icmp_seq=0 ttl=57 time=14.201 ms"),
            14.201);
  EXPECT_EQ(LatencyProbe::parseOutput(FakeChildren::reply("0.052")), 0.052);
  EXPECT_EQ(LatencyProbe::parseOutput("uptime=7 time=5 ms"), 7.0);
}

TEST(PingOutput, GivesNothingWithoutAReplyOrASpaceOrUtf8) {
  for (const char* text : {"Request timeout for icmp_seq 0\n\n1 packets transmitted, 0 received",
                           "", "Time=12 ms TIME=13 ms", "time<1 ms", "time=12.3",
                           "time=", "time=12.3\n", "\xFF time=12.3 ms", "time=12.3 ms \xC3"}) {
    EXPECT_EQ(LatencyProbe::parseOutput(text), std::nullopt) << text;
  }
}

TEST(PingOutput, TakesATimeThatIsNoNumberAsASuccessOfZero) {
  for (const char* text :
       {"time= ms", "time=abc ms", "time=12,5 ms", "time=1.2.3 ms", "time=12ms ", "time=12\nms ",
        "time=inf ms", "time=nan ms", "time=1e999 ms", "time=x time=5 ms"}) {
    EXPECT_EQ(LatencyProbe::parseOutput(text), 0.0) << text;
  }
}

class LatencyProbeTest : public testing::Test {
protected:
  FakeMachine machine;
  LatencyProbe prober{machine.children};
  LineQuality quality;

  void succeed(const std::string& milliseconds) {
    machine.children.usual.output = FakeChildren::reply(milliseconds);
    run();
  }
  void fail() {
    machine.children.usual.output = "no answer";
    run();
  }
  void run() {
    quality = awaited(prober.probe(quality), [this] { machine.scheduler.advance(10.0); });
  }
};

TEST_F(LatencyProbeTest, AsksPingOnceAndNeedsTwoLatenciesForAJitter) {
  quality.jitterMs = 3.5;
  succeed("12.5");
  EXPECT_EQ(machine.children.runs, (std::vector<ToolCall>{{Tool::ping, "1.1.1.1", 2.0}}));
  EXPECT_EQ(quality.latencyMs, 12.5);
  EXPECT_EQ(quality.jitterMs, 3.5);
  EXPECT_EQ(quality.packetLossPercent, 0.0);
}

TEST_F(LatencyProbeTest, TakesJitterAsTheMeanDifferenceOfNeighbours) {
  succeed("10");
  succeed("20");
  succeed("15");
  EXPECT_EQ(quality.jitterMs, 7.5);
}

TEST_F(LatencyProbeTest, ForgetsAllButTheLastTenLatencies) {
  succeed("1000");
  for (int count = 0; count < 9; ++count) {
    succeed("10");
  }
  EXPECT_EQ(quality.jitterMs, 110.0) << "(990 + 8 * 0) / 9";
  succeed("10");
  EXPECT_EQ(quality.jitterMs, 0.0);
}

TEST_F(LatencyProbeTest, RaisesLossByTenAndLowersItByFiveBetweenZeroAndAHundred) {
  for (const double loss : {10.0, 20.0, 30.0, 40.0, 50.0, 60.0, 70.0, 80.0, 90.0, 100.0, 100.0}) {
    fail();
    EXPECT_EQ(quality.packetLossPercent, loss);
  }
  for (double loss = 95.0; loss >= 0.0; loss -= 5.0) {
    succeed("10");
    EXPECT_EQ(quality.packetLossPercent, loss);
  }
  quality.packetLossPercent = 96.0;
  fail();
  EXPECT_EQ(quality.packetLossPercent, 100.0);
  quality.packetLossPercent = 3.0;
  succeed("10");
  EXPECT_EQ(quality.packetLossPercent, 0.0);
}

TEST_F(LatencyProbeTest, PublishesZeroLatencyAndKeepsTheJitterAfterAFailure) {
  succeed("10");
  succeed("30");
  fail();
  EXPECT_EQ(quality.latencyMs, 0.0);
  EXPECT_EQ(quality.jitterMs, 20.0);
  succeed("30");
  EXPECT_EQ(quality.jitterMs, 10.0) << "the failure left no latency in the window";
}

TEST_F(LatencyProbeTest, CountsAToolThatIsMissingAsAFailure) {
  machine.children.usual.output = std::nullopt;
  run();
  EXPECT_EQ(quality.packetLossPercent, 10.0);
  EXPECT_EQ(quality.latencyMs, 0.0);
}

TEST_F(LatencyProbeTest, LetsATimeThatIsNoNumberEnterTheWindowAsZero) {
  quality.packetLossPercent = 20.0;
  succeed("10");
  succeed("soon");
  EXPECT_EQ(quality.latencyMs, 0.0);
  EXPECT_EQ(quality.jitterMs, 10.0);
  EXPECT_EQ(quality.packetLossPercent, 10.0);
}

} // namespace
} // namespace tidewell::test
