#include "connectivity/MonitorState.h"
#include "format/MenubarLabel.h"
#include "platform/linux/bus/SessionBus.h"
#include "platform/linux/loop/EpollLoop.h"
#include "platform/linux/network/DeviceTable.h"
#include "platform/linux/network/LinuxConfigurationStore.h"
#include "platform/linux/network/RouteSocket.h"
#include "sampling/SamplerState.h"
#include "settings/AppSettings.h"
#include "tile/TextTile.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <vector>

namespace {

using namespace tidewell;

/// The kernel's answer about the route, once a sample.
void kernelRoute(benchmark::State& state) {
  RouteSocket socket;
  EpollLoop loop;
  SessionBus noBus(loop, "");
  LinuxConfigurationStore configuration(loop, socket, noBus);
  for (auto _ : state) {
    benchmark::DoNotOptimize(configuration.primaryInterface());
  }
}
BENCHMARK(kernelRoute);

/// The kernel's answer about the interface, once a sample.
void kernelCounters(benchmark::State& state) {
  RouteSocket socket;
  EpollLoop loop;
  SessionBus noBus(loop, "");
  const std::string name =
      LinuxConfigurationStore(loop, socket, noBus).primaryInterface().value_or("lo");
  DeviceTable table;
  for (auto _ : state) {
    benchmark::DoNotOptimize(table.device(name));
  }
}
BENCHMARK(kernelCounters);

/// All texts of the item after a sample: label, tool tip and menu rows.
void itemTextsOfASample(benchmark::State& state) {
  SamplerState sampler;
  const MonitorState monitor;
  const AppSettings settings;
  std::int64_t rate = 1;
  for (auto _ : state) {
    sampler.currentDownloadBytesPerSec.set(rate = rate * 7 % 10'000'000'019);
    benchmark::DoNotOptimize(itemTexts(sampler, monitor, settings));
  }
}
BENCHMARK(itemTextsOfASample);

/// The picture for hosts without labels.
void squareTile(benchmark::State& state) {
  const auto edge = static_cast<int>(state.range(0));
  std::vector<std::uint8_t> argb(TileSize{edge, edge}.bytes());
  for (auto _ : state) {
    TextTile::drawSquare("↓12.3M ↑456K", edge, argb);
    benchmark::DoNotOptimize(argb.data());
  }
}
BENCHMARK(squareTile)->Arg(22)->Arg(44);

void wideTile(benchmark::State& state) {
  std::vector<std::uint8_t> argb(TextTile::wideSize(labelGuide).bytes());
  for (auto _ : state) {
    TextTile::drawWide("↓12.3M ↑456K", labelGuide, argb);
    benchmark::DoNotOptimize(argb.data());
  }
}
BENCHMARK(wideTile);

} // namespace

BENCHMARK_MAIN();
