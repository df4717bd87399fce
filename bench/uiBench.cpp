#include "FilledDetails.h"
#include "FilledPanel.h"
#include "ui/charts/AxisCharts.h"
#include "ui/charts/MiniGraphView.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>

namespace {

using namespace tidewell;

void paintAll(benchmark::State& state, QWidget& widget) {
  const auto scale = static_cast<int>(state.range(0));
  QImage image(widget.size() * scale, QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(scale);
  for (auto _ : state) {
    widget.render(&image, {}, {}, QWidget::DrawChildren);
  }
}

/// Repaints the whole panel with device pixel ratios 1 and 2.
void panelRepaint(benchmark::State& state) {
  bench::FilledPanel panel;
  QCoreApplication::processEvents();
  paintAll(state, panel.view);
}
BENCHMARK(panelRepaint)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

/// The chart with 300 samples.
void graphRepaint(benchmark::State& state) {
  MiniGraphView view;
  view.setSnapshots(bench::fullHistory());
  view.resize(300, view.sizeHint().height());
  paintAll(state, view);
}
BENCHMARK(graphRepaint)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

/// The cost of a new sample in the panel, without painting.
void newSample(benchmark::State& state) {
  bench::FilledPanel panel;
  const SnapshotList history = bench::fullHistory();
  std::int64_t rate = 0;
  for (auto _ : state) {
    panel.sampler.currentDownloadBytesPerSec.set(rate += 10'000);
    panel.sampler.snapshots.set(history);
  }
}
BENCHMARK(newSample)->Unit(benchmark::kMicrosecond);

/// The chart of the details with 300 samples.
void detailChartRepaint(benchmark::State& state) {
  BandwidthChart chart;
  chart.setSnapshots(bench::fullHistory());
  chart.resize(632, chart.sizeHint().height());
  paintAll(state, chart);
}
BENCHMARK(detailChartRepaint)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

/// The charts with 5,000 samples, as an extension may keep.
void graphOfManySamples(benchmark::State& state) {
  MiniGraphView view;
  view.setSnapshots(bench::fullHistory(5000));
  view.resize(300, view.sizeHint().height());
  paintAll(state, view);
}
BENCHMARK(graphOfManySamples)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

void detailChartOfManySamples(benchmark::State& state) {
  BandwidthChart chart;
  chart.setSnapshots(bench::fullHistory(5000));
  chart.resize(632, chart.sizeHint().height());
  paintAll(state, chart);
}
BENCHMARK(detailChartOfManySamples)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

/// Repaints the first tab of the details.
void detailRepaint(benchmark::State& state) {
  bench::FilledDetails details;
  QCoreApplication::processEvents();
  paintAll(state, details.view);
}
BENCHMARK(detailRepaint)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

/// The cost of a new sample in the details, without painting.
void newSampleInDetails(benchmark::State& state) {
  bench::FilledDetails details;
  const SnapshotList history = bench::fullHistory();
  std::int64_t rate = 0;
  for (auto _ : state) {
    details.sampler.currentDownloadBytesPerSec.set(rate += 10'000);
    details.sampler.snapshots.set(history);
  }
}
BENCHMARK(newSampleInDetails)->Unit(benchmark::kMicrosecond);

/// Creates the details and paints them once.
void firstPictureOfDetails(benchmark::State& state) {
  for (auto _ : state) {
    bench::FilledDetails details;
    QImage image(details.view.size(), QImage::Format_ARGB32_Premultiplied);
    details.view.render(&image, {}, {}, QWidget::DrawChildren);
  }
}
BENCHMARK(firstPictureOfDetails)->Unit(benchmark::kMillisecond);

/// Creates a panel and paints it once.
void firstPicture(benchmark::State& state) {
  for (auto _ : state) {
    bench::FilledPanel panel;
    QImage image(panel.view.size(), QImage::Format_ARGB32_Premultiplied);
    panel.view.render(&image, {}, {}, QWidget::DrawChildren);
  }
}
BENCHMARK(firstPicture)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
