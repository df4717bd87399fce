#include "connectivity/MonitorState.h"
#include "format/MenubarLabel.h"
#include "format/SpeedFormatter.h"
#include "processes/ProcessUsage.h"
#include "sampling/SamplerState.h"
#include "settings/AppSettings.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>

namespace {

using namespace tidewell;

using Formatter = std::string (*)(std::int64_t);

void format(benchmark::State& state, Formatter formatter) {
  std::int64_t rate = 1;
  for (auto _ : state) {
    benchmark::DoNotOptimize(formatter(rate));
    rate = rate * 7 % 10'000'000'019;
  }
}
BENCHMARK_CAPTURE(format, rate, &SpeedFormatter::format);
BENCHMARK_CAPTURE(format, megabits, &SpeedFormatter::formatMbps);
BENCHMARK_CAPTURE(format, compact, &SpeedFormatter::formatCompact);
BENCHMARK_CAPTURE(format, processRate, &ProcessUsage::formatBytes);
BENCHMARK_CAPTURE(format, processTotal, &ProcessUsage::formatBytesTotal);

void menubarString(benchmark::State& state) {
  SamplerState sampler;
  const MonitorState monitor;
  const AppSettings settings;
  const MenubarLabel label(sampler, monitor, settings);
  sampler.currentDownloadBytesPerSec.set(12'345'678);
  sampler.currentUploadBytesPerSec.set(3'210);
  for (auto _ : state) {
    benchmark::DoNotOptimize(label.menubarString());
  }
}
BENCHMARK(menubarString);

} // namespace

BENCHMARK_MAIN();
