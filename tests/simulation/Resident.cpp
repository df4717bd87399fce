#include "Resident.h"

#include "connectivity/NetworkMonitor.h"
#include "processes/ProcessTracker.h"
#include "sampling/BandwidthSampler.h"
#include "speedtest/SpeedTestRunner.h"

#include <utility>

namespace tidewell::test {

namespace {

constexpr const char* helpers = "/usr/libexec/tidewell/";

} // namespace

Resident::Resident(const Surroundings& machine, std::function<void()> quit,
                   std::function<void(const WindowRequest& request)> asked,
                   std::function<void()> askedForSpeedTest)
    : children(machine.loop, machine.onTerminate),
      http(machine.loop, std::string(helpers) + "publicAddress", machine.onLookup),
      bus(machine.loop, machine.busAddress), sound(machine.loop, machine.scheduler.background(),
                                                   std::string(helpers) + "notificationSound"),
      notices(bus, machine.clock, [this] { sound.play(); }), platform{machine.scheduler,
                                                                      machine.clock,
                                                                      machine.counters,
                                                                      machine.configuration,
                                                                      machine.addresses,
                                                                      machine.paths,
                                                                      http,
                                                                      children},
      ownDelegate(std::make_unique<AppDelegate>(
          platform, AppEnvironment{machine.settings, machine.preferences, machine.center,
                                   machine.notifications})),
      delegate(*ownDelegate),
      windows(std::make_unique<WindowsProcess>(
          machine.loop, std::string(helpers) + "tidewell-windows", "/usr/bin/tidewell")) {
  const auto runSpeedTest = [this, askedForSpeedTest = std::move(askedForSpeedTest)] {
    askedForSpeedTest();
    delegate.speedTest().run();
  };
  const auto ask = [this, asked = std::move(asked)](const WindowRequest& request) {
    asked(request);
    windows->ask(request);
  };
  const ResidentSources sources{
      delegate.bandwidthSampler(), delegate.networkMonitor(), delegate.processTracker(),
      delegate.speedTest(),        machine.settings,          machine.preferences};
  shell = std::make_unique<ResidentShell>(machine.loop, bus, sources,
                                          ResidentActions{quit, quit, runSpeedTest, ask});
}

void Resident::retire() {
  shell.reset();
  windows.reset();
  ownDelegate.reset();
}

} // namespace tidewell::test
