#include "processes/ProcessTracker.h"

#include "support/FakeMachine.h"

#include <gtest/gtest.h>

namespace tidewell::test {
namespace {

using namespace std::chrono_literals;

class ProcessTrackerTest : public testing::Test {
protected:
  ProcessTrackerTest() { machine.children.usual = {"header\nbrowser.812,5,6,\n", 1.0}; }

  FakeMachine machine;
  std::shared_ptr<ProcessTracker> tracker = std::make_shared<ProcessTracker>(machine.platform);

  const std::vector<ProcessUsage>& rows() const { return tracker->processes.get(); }
};

TEST_F(ProcessTrackerTest, RunsTheToolAfterTwoSecondsAndThenAtTheInterval) {
  EXPECT_EQ(machine.scheduler.labels(), std::vector<std::string>{"com.halden.tidewell.process"});
  tracker->start(10.0);
  machine.scheduler.advance(1.9);
  EXPECT_TRUE(machine.children.runs.empty());
  machine.scheduler.advance(0.2);
  EXPECT_EQ(machine.children.runs, (std::vector<ToolCall>{{Tool::processTraffic, {}, 0.0}}));
  EXPECT_TRUE(rows().empty());
  machine.scheduler.advance(1.0);
  ASSERT_EQ(rows().size(), 1U);
  machine.scheduler.advance(8.8);
  EXPECT_EQ(machine.children.runs.size(), 1U);
  machine.scheduler.advance(0.2);
  EXPECT_EQ(machine.children.runs.size(), 2U);
}

TEST_F(ProcessTrackerTest, SendsTheWatchdogsSignalWhetherTheToolIsThereOrNot) {
  tracker->start(10.0);
  machine.scheduler.advance(5.9);
  EXPECT_TRUE(machine.children.terminated.empty());
  machine.scheduler.advance(0.2);
  ASSERT_EQ(machine.children.terminated.size(), 1U);
  EXPECT_EQ(machine.children.terminated[0].second, Ticks(6s));
}

TEST_F(ProcessTrackerTest, PublishesAnEmptyListWithoutTheToolOrWithoutText) {
  const FakeChildren::Answer good = machine.children.usual;
  machine.children.next = {good, {{}, 0.0}, good, {"header\nbrowser.812,5,6,\n\xFF", 0.0}};
  tracker->start(10.0);
  for (const std::size_t count : {1U, 0U, 1U, 0U}) {
    machine.scheduler.advance(count == 0 ? 15.0 : 5.0);
    EXPECT_EQ(rows().size(), count);
  }
}

TEST_F(ProcessTrackerTest, KeepsItsListWhenStopped) {
  tracker->start(10.0);
  machine.scheduler.advance(5.0);
  tracker->stop();
  tracker->stop();
  machine.scheduler.advance(60.0);
  EXPECT_EQ(machine.children.runs.size(), 1U);
  EXPECT_EQ(rows().size(), 1U);
}

TEST_F(ProcessTrackerTest, LeavesAnEarlierTimerFiringWhenStartedAgain) {
  tracker->start(10.0);
  machine.scheduler.advance(1.0);
  tracker->start(10.0);
  machine.scheduler.advance(4.0);
  EXPECT_EQ(machine.children.runs.size(), 2U);
  tracker->stop();
  machine.scheduler.advance(10.0);
  EXPECT_EQ(machine.children.runs.size(), 3U) << "the first timer is beyond reach";
}

TEST_F(ProcessTrackerTest, NeverOverlapsItsRuns) {
  machine.children.usual.takes = 25.0;
  tracker->start(10.0);
  machine.scheduler.advance(26.0);
  EXPECT_EQ(machine.children.runs.size(), 1U);
  machine.scheduler.advance(2.0);
  EXPECT_EQ(machine.children.runs.size(), 2U);
}

TEST_F(ProcessTrackerTest, PublishesNothingOnceItIsGone) {
  tracker->start(10.0);
  machine.scheduler.advance(2.5);
  const std::weak_ptr<ProcessTracker> weak = tracker;
  tracker.reset();
  machine.scheduler.advance(60.0);
  EXPECT_TRUE(weak.expired());
  EXPECT_EQ(machine.children.runs.size(), 1U);
}

} // namespace
} // namespace tidewell::test
