#include "FilledPanel.h"
#include "ui/panel/MiniGraphView.h"

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

/// A repaint of the whole panel, at one and at two pixels to the unit.
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

/// What a sample costs in the view, before anything is painted.
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

/// Making a panel, up to its first picture.
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
