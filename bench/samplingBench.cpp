#include "ManualScheduler.h"
#include "base/Service.h"
#include "platform/ChildProcess.h"
#include "platform/HttpClient.h"
#include "platform/PathMonitor.h"
#include "platform/Platform.h"
#include "platform/linux/loop/SystemClock.h"
#include "platform/linux/network/DeviceTable.h"
#include "platform/linux/network/LinuxConfigurationStore.h"
#include "platform/linux/network/LinuxInterfaceAddresses.h"
#include "platform/linux/network/LinuxInterfaceCounters.h"
#include "platform/linux/network/RouteSocket.h"
#include "sampling/BandwidthSampler.h"

#include <benchmark/benchmark.h>

namespace {

using namespace tidewell;

class NoChildren final : public ChildProcess {
public:
  std::optional<std::string> run(const std::string&, const std::vector<std::string>&,
                                 const std::function<void(Id)>&) override {
    return std::nullopt;
  }
  void terminate(Id) override {}
};

class NoPaths final : public PathMonitor {
public:
  std::unique_ptr<PathWatch> watch(WorkQueue&, Handler) override { return nullptr; }
};

class NoHttp final : public HttpClient {
public:
  std::optional<std::string> get(const std::string&, Seconds) override { return std::nullopt; }
};

class InstantClock final : public Clock {
public:
  double now() const override { return m_now += 2.0; }

private:
  mutable double m_now = 1e9;
};

/// One whole sample without a running probe: route, counters, arithmetic, publication, history.
void sample(benchmark::State& state) {
  bench::ManualScheduler scheduler;
  InstantClock clock;
  RouteSocket socket;
  DeviceTable table;
  LinuxInterfaceCounters counters(table);
  LinuxConfigurationStore configuration(socket);
  NoChildren children;
  LinuxInterfaceAddresses addresses;
  NoPaths paths;
  NoHttp http;
  const Platform platform{scheduler, clock, counters, configuration,
                          addresses, paths, http,     children};
  const auto sampler = makeService<BandwidthSampler>(scheduler.main(), platform);
  sampler->start(2.0);
  scheduler.drain();
  for (auto _ : state) {
    scheduler.fire();
  }
}
BENCHMARK(sample);

/// What of it the kernel's answer about the route costs.
void kernelRoute(benchmark::State& state) {
  RouteSocket socket;
  LinuxConfigurationStore configuration(socket);
  for (auto _ : state) {
    benchmark::DoNotOptimize(configuration.primaryInterface());
  }
}
BENCHMARK(kernelRoute);

/// What of it the kernel's answer about the interface costs.
void kernelCounters(benchmark::State& state) {
  RouteSocket socket;
  const std::string name = LinuxConfigurationStore(socket).primaryInterface().value_or("lo");
  DeviceTable table;
  for (auto _ : state) {
    benchmark::DoNotOptimize(table.device(name));
  }
}
BENCHMARK(kernelCounters);

} // namespace

BENCHMARK_MAIN();
