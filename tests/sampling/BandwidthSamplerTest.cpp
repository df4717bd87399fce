#include "sampling/BandwidthSampler.h"

#include "support/FakeMachine.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace tidewell::test {
namespace {

class BandwidthSamplerTest : public testing::Test {
protected:
  FakeMachine machine;
  std::shared_ptr<BandwidthSampler> sampler = std::make_shared<BandwidthSampler>(machine.platform);

  void receive(std::int64_t bytes) { machine.bytes().bytesIn += bytes; }
  void send(std::int64_t bytes) { machine.bytes().bytesOut += bytes; }
  void startAndPrime(Seconds interval = 2.0) {
    sampler->start(interval);
    machine.scheduler.settle();
  }
  std::int64_t download() const { return sampler->currentDownloadBytesPerSec.get(); }
  std::int64_t upload() const { return sampler->currentUploadBytesPerSec.get(); }
  const SnapshotList& history() const { return sampler->snapshots.get(); }
  void expectQuality(double latency, double jitter, double loss) const {
    EXPECT_EQ(sampler->latencyMs.get(), latency);
    EXPECT_EQ(sampler->jitterMs.get(), jitter);
    EXPECT_EQ(sampler->packetLossPercent.get(), loss);
    EXPECT_EQ(history().back()->latencyMs(), latency);
    EXPECT_EQ(history().back()->jitterMs(), jitter);
    EXPECT_EQ(history().back()->packetLossPercent(), loss);
  }
};

TEST_F(BandwidthSamplerTest, IsIdleAndOptimisticWhenNew) {
  EXPECT_EQ(machine.scheduler.labels(), std::vector<std::string>{"com.halden.tidewell.sampler"});
  EXPECT_EQ(download(), 0);
  EXPECT_EQ(upload(), 0);
  EXPECT_TRUE(history().empty());
  EXPECT_TRUE(sampler->isConnected);
  EXPECT_EQ(sampler->currentStatus(), NetworkStatus::excellent);
  machine.scheduler.advance(60.0);
  EXPECT_TRUE(history().empty());
}

TEST_F(BandwidthSamplerTest, PublishesRatesAgainstThePrimedBaselineAtTheFirstFiring) {
  receive(1'000);
  startAndPrime();
  EXPECT_TRUE(history().empty()) << "priming publishes nothing";
  receive(2'000);
  send(1'001);
  machine.scheduler.advance(2.0);
  EXPECT_EQ(download(), 1'000);
  EXPECT_EQ(upload(), 500) << "truncated, not rounded";
  ASSERT_EQ(history().size(), 1U);
  EXPECT_EQ(history().front()->downloadBytesPerSec(), 1'000);
  EXPECT_EQ(history().front()->uploadBytesPerSec(), 500);
  EXPECT_EQ(history().front()->timestamp(), machine.clock.now());
}

TEST_F(BandwidthSamplerTest, PrimesBeforeTheFirstFiringEvenWithATinyInterval) {
  receive(5'000);
  sampler->start(0.001);
  machine.scheduler.advance(0.001);
  ASSERT_EQ(history().size(), 1U);
  EXPECT_EQ(download(), 0) << "what came before the start does not count";
}

TEST_F(BandwidthSamplerTest, DividesByTheTimeThatReallyPassed) {
  startAndPrime();
  machine.clock.jump(2.0);
  receive(4'000);
  send(2'000);
  machine.scheduler.advance(2.0);
  EXPECT_EQ(download(), 1'000) << "four seconds by the wall clock";
  EXPECT_EQ(upload(), 500);
}

TEST_F(BandwidthSamplerTest, PrimesItsClockAfterTheCountersAndSamplesItBefore) {
  machine.counters.atRead = [this] { machine.clock.jump(0.5); };
  const double begin = machine.clock.now();
  startAndPrime();
  receive(4'000);
  machine.scheduler.advance(2.0);
  EXPECT_EQ(download(), 2'000) << "neither reading counts towards the interval";
  EXPECT_EQ(history().front()->timestamp(), begin + 2.5);
}

TEST_F(BandwidthSamplerTest, ReadsZeroForOneIntervalWhenACounterWentDown) {
  machine.bytes().bytesIn = 4'294'967'000;
  startAndPrime();
  machine.bytes().bytesIn = 200;
  machine.scheduler.advance(2.0);
  EXPECT_EQ(download(), 0);
  receive(2'000);
  machine.scheduler.advance(2.0);
  EXPECT_EQ(download(), 1'000);
}

TEST_F(BandwidthSamplerTest, PublishesNothingWhenTheClockWentBackAndGoesOnFromTheNewTime) {
  startAndPrime();
  machine.scheduler.advance(2.0);
  ASSERT_EQ(history().size(), 1U);
  machine.clock.jump(-3600.0);
  receive(50'000);
  machine.scheduler.advance(2.0);
  EXPECT_EQ(history().size(), 1U);
  receive(3'000);
  machine.scheduler.advance(2.0);
  ASSERT_EQ(history().size(), 2U);
  EXPECT_EQ(download(), 1'500) << "the bytes of the lost event are in its new baseline";
}

TEST_F(BandwidthSamplerTest, PublishesNothingWhenTheClockStoodStill) {
  startAndPrime();
  machine.clock.jump(-2.0);
  machine.scheduler.advance(2.0);
  EXPECT_TRUE(history().empty());
}

TEST_F(BandwidthSamplerTest, TakesABaselineOfTheYear1970AsNone) {
  machine.clock.jump(-machine.clock.now());
  startAndPrime();
  machine.scheduler.advance(2.0);
  EXPECT_TRUE(history().empty());
  machine.scheduler.advance(2.0);
  EXPECT_EQ(history().size(), 1U);
}

TEST_F(BandwidthSamplerTest, ProbesWithEveryFifthRateProducingSample) {
  startAndPrime();
  machine.scheduler.advance(8.0);
  EXPECT_TRUE(machine.children.runs.empty());
  machine.clock.jump(-100.0);
  machine.scheduler.advance(2.0);
  EXPECT_TRUE(machine.children.runs.empty()) << "an event without rates does not count";
  machine.scheduler.advance(2.0);
  EXPECT_EQ(machine.children.runs.size(), 1U);
  machine.scheduler.advance(10.0);
  EXPECT_EQ(machine.children.runs.size(), 2U);
}

TEST_F(BandwidthSamplerTest, CarriesQualityOverBetweenProbesAndThroughARestart) {
  machine.children.next = {
      {{}, 0.0}, {{}, 0.0}, {FakeChildren::reply("10"), 0.0}, {FakeChildren::reply("30"), 0.0}};
  machine.children.usual.output = std::nullopt;
  startAndPrime(1.0);
  machine.scheduler.advance(4.0);
  expectQuality(0.0, 0.0, 0.0);
  machine.scheduler.advance(15.0);
  expectQuality(10.0, 0.0, 15.0);
  for (int sample = 20; sample < 24; ++sample) {
    machine.scheduler.advance(1.0);
    expectQuality(30.0, 20.0, 10.0);
  }
  sampler->stop();
  machine.scheduler.advance(10.0);
  startAndPrime(1.0);
  machine.scheduler.advance(1.0);
  expectQuality(30.0, 20.0, 10.0);
  machine.scheduler.advance(1.0);
  expectQuality(0.0, 20.0, 20.0);
  EXPECT_EQ(history().size(), 25U);
}

TEST_F(BandwidthSamplerTest, KeepsTheLastThreeHundredSamplesOldestFirst) {
  std::size_t most = 0;
  const auto watch = sampler->snapshots.subscribe(
      [&](const SnapshotList& list) { most = std::max(most, list.size()); });
  startAndPrime(1.0);
  machine.scheduler.advance(300.0);
  ASSERT_EQ(history().size(), 300U);
  const auto first = history().front();
  const auto second = history()[1];
  machine.scheduler.advance(1.0);
  ASSERT_EQ(history().size(), 300U);
  EXPECT_EQ(history().front()->id(), second->id());
  EXPECT_TRUE(std::ranges::is_sorted(history(), {}, [](const auto& s) { return s->timestamp(); }));
  EXPECT_LT(first->timestamp(), history().front()->timestamp());
  EXPECT_EQ(most, BandwidthSampler::maxSnapshots) << "an observer never sees more";
}

TEST_F(BandwidthSamplerTest, PublishesInItsOrderEvenWhenNothingChanged) {
  std::vector<std::string> order;
  std::vector<Subscription> subscriptions;
  const auto note = [&](const char* name) {
    return [&order, name](auto) { order.emplace_back(name); };
  };
  subscriptions.push_back(
      sampler->snapshots.subscribe([&](const auto&) { order.emplace_back("snapshots"); }));
  subscriptions.push_back(sampler->packetLossPercent.subscribe(note("loss")));
  subscriptions.push_back(sampler->jitterMs.subscribe(note("jitter")));
  subscriptions.push_back(sampler->latencyMs.subscribe(note("latency")));
  subscriptions.push_back(sampler->currentUploadBytesPerSec.subscribe(note("upload")));
  subscriptions.push_back(sampler->currentDownloadBytesPerSec.subscribe(note("download")));
  order.clear();
  startAndPrime();
  machine.scheduler.advance(2.0);
  const std::vector<std::string> once{"download", "upload", "latency",
                                      "jitter",   "loss",   "snapshots"};
  EXPECT_EQ(order, once);
}

TEST_F(BandwidthSamplerTest, KeepsEverythingThroughStopAndRestart) {
  startAndPrime();
  receive(2'000);
  machine.scheduler.advance(6.0);
  ASSERT_EQ(history().size(), 3U);
  sampler->stop();
  receive(1'000'000);
  machine.scheduler.advance(60.0);
  EXPECT_EQ(history().size(), 3U);
  sampler->start(5.0);
  machine.scheduler.settle();
  receive(5'000);
  machine.scheduler.advance(5.0);
  EXPECT_EQ(history().size(), 4U);
  EXPECT_EQ(download(), 1'000) << "the restart takes a new baseline";
  EXPECT_TRUE(machine.children.runs.empty());
  machine.scheduler.advance(5.0);
  EXPECT_EQ(machine.children.runs.size(), 1U) << "the fifth sample counted from construction";
}

TEST_F(BandwidthSamplerTest, MayBeStartedOrStoppedTwice) {
  sampler->stop();
  startAndPrime();
  startAndPrime();
  machine.scheduler.advance(2.0);
  EXPECT_EQ(history().size(), 1U) << "the second start replaces the timer";
  sampler->stop();
  sampler->stop();
  machine.scheduler.advance(10.0);
  EXPECT_EQ(history().size(), 1U);
}

TEST_F(BandwidthSamplerTest, CoalescesFiringsThatASlowProbeHeldUpAndKeepsTheGrid) {
  startAndPrime(1.0);
  const double begin = machine.clock.now();
  machine.children.usual.takes = 2.5;
  machine.scheduler.advance(10.0);
  std::vector<double> times;
  for (const auto& snapshot : history()) {
    times.push_back(snapshot->timestamp() - begin);
  }
  const std::vector<double> expected{1.0, 2.0, 3.0, 4.0, 5.0, 7.5, 8.0, 9.0};
  ASSERT_GE(times.size(), expected.size());
  for (std::size_t index = 0; index < expected.size(); ++index) {
    EXPECT_NEAR(times[index], expected[index], 1e-6) << index;
  }
}

TEST_F(BandwidthSamplerTest, DoesNotBlockTheMainQueueWhileItProbes) {
  machine.children.usual.takes = 2.0;
  startAndPrime(1.0);
  machine.scheduler.advance(5.5);
  bool ran = false;
  machine.scheduler.main().post([&] { ran = true; });
  machine.scheduler.settle();
  EXPECT_TRUE(ran);
  EXPECT_EQ(history().size(), 4U) << "the fifth waits for its probe";
}

TEST_F(BandwidthSamplerTest, PublishesNothingAfterItsDestruction) {
  int heard = 0;
  const auto watch = sampler->latencyMs.subscribe([&](double) { ++heard; });
  machine.children.usual.takes = 2.0;
  startAndPrime(1.0);
  machine.scheduler.advance(5.5);
  const int before = heard;
  const std::weak_ptr<BandwidthSampler> weak = sampler;
  sampler.reset();
  machine.scheduler.advance(60.0);
  EXPECT_TRUE(weak.expired());
  EXPECT_EQ(heard, before) << "the sample under way ends with the sampler";
  EXPECT_EQ(machine.children.runs.size(), 1U);
}

TEST_F(BandwidthSamplerTest, ReadsTheFallbackInterfaceWhenTheSystemKnowsNone) {
  machine.configuration.primary = std::nullopt;
  startAndPrime();
  machine.scheduler.advance(2.0);
  EXPECT_EQ(machine.counters.reads, (std::vector<std::string>{"en0", "en0"}));
  EXPECT_EQ(history().size(), 1U);
  EXPECT_EQ(download(), 0);
  machine.configuration.primary = "";
  EXPECT_EQ(BandwidthSampler::detectPrimaryInterface(machine.configuration), "") << "a name";
}

TEST_F(BandwidthSamplerTest, CountsNothingWhileTheInterfaceIsGone) {
  receive(10'000);
  startAndPrime();
  machine.counters.interfaces.clear();
  machine.scheduler.advance(2.0);
  EXPECT_EQ(history().size(), 1U);
  EXPECT_EQ(download(), 0);
}

TEST_F(BandwidthSamplerTest, FollowsASwitchOfInterfaceAtTheNextSample) {
  receive(1'000'000);
  machine.counters.interfaces["wlan0"] = {400, 100};
  startAndPrime();
  machine.configuration.primary = "wlan0";
  machine.scheduler.advance(2.0);
  EXPECT_EQ(download(), 0);
  receive(2'000);
  machine.scheduler.advance(2.0);
  EXPECT_EQ(download(), 1'000);
}

TEST_F(BandwidthSamplerTest, SurvivesAnIntervalThatIsNoNumber) {
  for (const double interval : {std::numeric_limits<double>::quiet_NaN(), -1.0, 0.0,
                                std::numeric_limits<double>::infinity(), 1e300}) {
    startAndPrime(interval);
    machine.scheduler.advance(10.0);
    sampler->stop();
  }
  EXPECT_LE(history().size(), 3U);
}

TEST(BandwidthSamplerDeathTest, AbortsWithAMessageWhenADeltaOverflows) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto overflow = [] {
    FakeMachine machine;
    auto sampler = std::make_shared<BandwidthSampler>(machine.platform);
    machine.bytes().bytesIn = std::numeric_limits<std::int64_t>::min();
    sampler->start(1.0);
    machine.scheduler.settle();
    machine.bytes().bytesIn = std::numeric_limits<std::int64_t>::max();
    machine.scheduler.advance(1.0);
  };
  EXPECT_DEATH(overflow(), "arithmetic overflow");
}

/// Whatever the order of the queues, a run keeps what every reader relies on.
class SamplerInterleavings : public testing::TestWithParam<std::uint64_t> {};

TEST_P(SamplerInterleavings, KeepHistoryAndCadenceUnderRandomRestartsAndProbes) {
  FakeMachine machine(GetParam());
  std::mt19937_64 random(GetParam());
  auto sampler = std::make_shared<BandwidthSampler>(machine.platform);
  std::size_t published = 0;
  const auto watch = sampler->snapshots.subscribe([&](const SnapshotList& list) {
    ASSERT_LE(list.size(), BandwidthSampler::maxSnapshots);
    published += list.empty() ? 0 : 1;
  });
  for (int round = 0; round < 60; ++round) {
    machine.children.usual = {random() % 3 == 0 ? std::nullopt
                                                : std::optional(FakeChildren::reply("9.5")),
                              static_cast<double>(random() % 30) / 10.0};
    machine.bytes().bytesIn += static_cast<std::int64_t>(random() % 1'000'000);
    if (random() % 4 == 0) {
      sampler->stop();
      sampler->start(0.5 + static_cast<double>(random() % 8));
    }
    machine.scheduler.advance(static_cast<double>(random() % 100) / 10.0);
    ASSERT_GE(sampler->packetLossPercent.get(), 0.0);
    ASSERT_LE(sampler->packetLossPercent.get(), 100.0);
  }
  sampler->stop();
  machine.scheduler.advance(5.0);
  EXPECT_EQ(machine.children.runs.size(), published / 5);
}

INSTANTIATE_TEST_SUITE_P(Seeds, SamplerInterleavings, testing::Range<std::uint64_t>(0, 64));

} // namespace
} // namespace tidewell::test
