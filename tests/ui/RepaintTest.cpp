#include "support/PaintLog.h"
#include "support/Panel.h"
#include "ui/components/PulseAnimation.h"
#include "ui/components/Spinner.h"

#include <gtest/gtest.h>

#include <set>

namespace tidewell::test {
namespace {

class RepaintTest : public testing::Test, protected Panel {
protected:
  void SetUp() override {
    sampler.snapshots.set(samples({1, 2, 3}));
    open();
    settle();
    log = std::make_unique<PaintLog>(*view);
  }
  std::unique_ptr<PaintLog> log;
};

TEST_F(RepaintTest, PaintsOnlyTheDotAtABeat) {
  auto& dot = only<PulseDot>();
  time.advance(0.5);
  dot.pulse().advance();
  settle();
  EXPECT_EQ(log->where(dot).boundingRect(), QRect(0, 0, 6, 6));
  EXPECT_TRUE(log->where(only<StatusBadge>()).isEmpty());
  EXPECT_TRUE(log->where(*view).isEmpty());
}

TEST_F(RepaintTest, PaintsNothingAtABeatOfTheSameLevel) {
  auto& dot = only<PulseDot>();
  time.advance(0.5);
  dot.pulse().advance();
  settle();
  log->clear();
  time.advance(2.0); // one whole cycle
  dot.pulse().advance();
  settle();
  EXPECT_TRUE(log->where(dot).isEmpty());
}

TEST_F(RepaintTest, PaintsOnlyTheFigureThatChanged) {
  sampler.latencyMs.set(20.0);
  settle();
  EXPECT_FALSE(log->where(cell(1)).isEmpty());
  for (const int other : {0, 2, 3}) {
    EXPECT_TRUE(log->where(cell(other)).isEmpty()) << other;
  }
  EXPECT_TRUE(log->where(only<MiniGraphView>()).isEmpty());
}

TEST_F(RepaintTest, PaintsNothingWhenAllReadsTheSame) {
  sampler.latencyMs.set(0.2);
  sampler.currentDownloadBytesPerSec.set(999);
  sampler.jitterMs.set(0.0);
  monitor.connectionInfo.set(ConnectionInfo{});
  monitor.isConnected.set(true);
  speedTest.isRunning.set(false);
  settle();
  for (const QWidget* widget : view->findChildren<QWidget*>()) {
    EXPECT_TRUE(log->where(*widget).isEmpty()) << widget->metaObject()->className();
  }
}

TEST_F(RepaintTest, PaintsTheChartButNotItsHeaderForANewSample) {
  sampler.snapshots.set(samples({1, 2, 3, 4}));
  settle();
  auto& graph = only<MiniGraphView>();
  EXPECT_EQ(log->where(graph).boundingRect(), graph.chart());
}

TEST_F(RepaintTest, PaintsOnlyTheRowThatChanged) {
  monitor.connectionInfo.mutate([](ConnectionInfo& info) { info.dns = "9.9.9.9"; });
  settle();
  EXPECT_FALSE(log->where(row(4)).isEmpty());
  for (const int other : {0, 1, 2, 3}) {
    EXPECT_TRUE(log->where(row(other)).isEmpty()) << other;
  }
}

TEST_F(RepaintTest, TurnsTheSpinnerInItsOwnSquare) {
  speedTest.isRunning.set(true);
  settle();
  auto& spinner = only<Spinner>();
  EXPECT_TRUE(spinner.isTicking());
  log->clear();
  time.advance(0.3);
  spinner.advance();
  settle();
  EXPECT_EQ(log->where(spinner).boundingRect(), spinner.rect());
  EXPECT_TRUE(log->where(only<MiniGraphView>()).isEmpty());
  speedTest.isRunning.set(false);
  settle();
  EXPECT_FALSE(spinner.isTicking());
}

TEST_F(RepaintTest, RestsWhileThePanelIsHidden) {
  view->hide();
  EXPECT_FALSE(only<PulseDot>().pulse().isTicking());
  view->show();
  EXPECT_TRUE(only<PulseDot>().pulse().isTicking());
}

} // namespace
} // namespace tidewell::test
