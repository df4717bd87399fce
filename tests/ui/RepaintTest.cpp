#include "support/Details.h"
#include "ui/charts/AxisCharts.h"
#include "ui/charts/RangeSelector.h"
#include "ui/components/PulseAnimation.h"
#include "ui/components/Spinner.h"
#include "ui/processes/ProcessRow.h"

#include <gtest/gtest.h>

#include <QPaintEvent>

#include <map>

namespace tidewell::test {
namespace {

/// Records which widgets of a tree are painted, and where.
class PaintLog final : public QObject {
public:
  explicit PaintLog(QWidget& root) {
    root.installEventFilter(this);
    for (QWidget* widget : root.findChildren<QWidget*>()) {
      widget->installEventFilter(this);
    }
  }
  [[nodiscard]] QRegion where(const QWidget& widget) const {
    const auto found = m_regions.find(&widget);
    return found == m_regions.end() ? QRegion() : found->second;
  }
  /// The painted widgets of this type.
  template <class Widget> [[nodiscard]] QList<Widget*> painted(const QWidget& root) const {
    QList<Widget*> found = root.findChildren<Widget*>();
    found.removeIf([this](const Widget* widget) { return where(*widget).isEmpty(); });
    return found;
  }
  void clear() { m_regions.clear(); }

protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Paint) {
      m_regions[watched] += dynamic_cast<QPaintEvent*>(event)->region();
    }
    return false;
  }

private:
  std::map<const QObject*, QRegion> m_regions;
};

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
  EXPECT_EQ(log->painted<StatCell>(*view), QList{&cell(1)});
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
  EXPECT_TRUE(log->painted<QWidget>(*view).isEmpty());
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
  EXPECT_EQ(log->painted<ValueRow>(*view), QList{&row(4)});
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

class DetailRepaintTest : public testing::Test, protected Details {
protected:
  void watch(int tab) {
    sampler.snapshots.set(samples({1'000, 2'000, 3'000}));
    tracker.processes.set(programs({"a", "b", "c"}));
    open(tab);
    log = std::make_unique<PaintLog>(*view);
  }
  std::unique_ptr<PaintLog> log;
};

TEST_F(DetailRepaintTest, PaintsNothingWhenAllReadsTheSame) {
  watch(0);
  sampler.currentDownloadBytesPerSec.set(999);
  tracker.processes.set(programs({"a", "b", "c"}));
  sampler.latencyMs.set(0.01);
  monitor.connectionInfo.set(ConnectionInfo{});
  Panel::settle();
  EXPECT_TRUE(log->painted<QWidget>(*view).isEmpty());
}

TEST_F(DetailRepaintTest, PaintsOnlyWhatANewSampleChanges) {
  watch(0);
  sampler.snapshots.set(samples({1'000, 2'000, 3'000, 2'000}));
  Panel::settle();
  EXPECT_EQ(log->painted<BandwidthChart>(*view).size(), 1);
  EXPECT_TRUE(log->painted<StatCell>(*view).isEmpty());
  EXPECT_TRUE(log->painted<ProcessRow>(*view).isEmpty());
  EXPECT_TRUE(log->painted<RangeButton>(*view).isEmpty());
  EXPECT_TRUE(log->painted<QTabBar>(*view).isEmpty());
}

TEST_F(DetailRepaintTest, PaintsOnlyTheRowThatChanged) {
  watch(1);
  auto list = programs({"a", "b", "c"});
  list[1].downloadBytesPerSec *= 2;
  tracker.processes.set(list);
  Panel::settle();
  EXPECT_EQ(log->painted<ProcessRow>(*view), QList{all<ProcessRow>(1)[1]});
}

TEST_F(DetailRepaintTest, PaintsOnlyTheDiagnosticThatChanged) {
  watch(3);
  sampler.jitterMs.set(7.0);
  Panel::settle();
  EXPECT_EQ(textsOf(log->painted<ValueRow>(*view),
                    [](const ValueRow* row) { return row->key().toStdString(); }),
            Texts{"Jitter"});
}

} // namespace
} // namespace tidewell::test
