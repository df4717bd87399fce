#include "Simulation.h"

#include "Preferences.h"
#include "connectivity/NetworkMonitor.h"
#include "processes/ProcessTracker.h"
#include "sampling/BandwidthSampler.h"
#include "speedtest/SpeedTestRunner.h"

#include <string>

namespace tidewell::test {

Simulation::Simulation(std::uint64_t seed) : dice(seed), machine(seed) {}

void Simulation::make() {
  m_delegate = std::make_unique<AppDelegate>(
      m_platform, AppEnvironment{settings, store, notices, m_notifications});
  m_isLaunched = false;
  connectivity.adopt(m_delegate->networkMonitor(), m_path);
  sampling.adopt(m_delegate->bandwidthSampler());
  toolModel.adopt(m_delegate->processTracker(), m_delegate->speedTest());
}

void Simulation::launch() {
  m_isLaunched = true;
  notices.adopt();
  watchBefore();
  const auto& isConnected = m_delegate->networkMonitor().isConnected;
  notices.beforeConnectivity(isConnected.get());
  const double interval = numberIn(store.value("refreshInterval"), 2.0);
  sampling.starts(interval > 0.0 ? interval : 2.0);
  if (truthIn(store.value("trackPerProcess"), true)) {
    toolModel.startsTracking();
  }
  m_delegate->applicationDidFinishLaunching();
  notices.afterwards();
  watchAfter();
}

/// Observers that hear before the program's own, which it registers when it is launched.
void Simulation::watchBefore() {
  auto& sampler = m_delegate->bandwidthSampler();
  const auto on = [this](auto& published, auto tell) {
    auto isFirst = std::make_shared<bool>(true); // the value that is there, not a publication
    m_subscriptions.push_back(published.subscribe([isFirst, tell](const auto& value) {
      if (!*isFirst) {
        tell(value);
      }
      *isFirst = false;
    }));
  };
  on(m_delegate->networkMonitor().isConnected,
     [this](bool isConnected) { notices.beforeConnectivity(isConnected); });
  on(sampler.currentDownloadBytesPerSec,
     [this](std::int64_t rate) { notices.beforeDownload(rate); });
  on(sampler.latencyMs, [this](double latency) { notices.beforeLatency(latency); });
  m_subscriptions.push_back(store.observe("refreshInterval", [this](const auto& value) {
    if (const double interval = numberIn(value, 0.0); interval > 0.0) {
      sampling.starts(interval);
    }
  }));
  m_subscriptions.push_back(store.observe("trackPerProcess", [this](const auto& value) {
    if (truthIn(value, false)) {
      toolModel.startsTracking();
    } else {
      toolModel.stopsTracking();
    }
  }));
}

/// Observers that hear after the program's own.
void Simulation::watchAfter() {
  auto& sampler = m_delegate->bandwidthSampler();
  auto& monitor = m_delegate->networkMonitor();
  const auto check = [this](const auto& /*value*/) {
    notices.afterwards();
    panel.check(m_delegate->bandwidthSampler(), m_delegate->networkMonitor());
  };
  m_subscriptions.push_back(monitor.isConnected.subscribe(check));
  m_subscriptions.push_back(sampler.currentDownloadBytesPerSec.subscribe(
      [this](std::int64_t /*rate*/) { notices.afterwards(); }));
  m_subscriptions.push_back(sampler.latencyMs.subscribe(check));
  m_subscriptions.push_back(sampler.snapshots.subscribe(check));
}

void Simulation::terminate() {
  if (m_isLaunched) {
    sampling.stops();
    toolModel.stopsTracking();
    m_delegate->applicationWillTerminate();
  }
}

void Simulation::destroy() {
  m_subscriptions.clear();
  m_delegate.reset();
  m_isLaunched = false;
  sampling.release();
  connectivity.release();
  toolModel.release();
}

void Simulation::report(const PathReport& path) {
  if (machine.paths.isWatched()) {
    connectivity.reports(path);
  }
  if (m_path == path) {
    machine.paths.report(path);
  } else {
    machine.paths.become(path);
  }
  m_path = path;
}

void Simulation::askForSpeedTest() {
  if (m_delegate) {
    toolModel.asksForSpeedTest();
    m_delegate->speedTest().run();
  }
}

void Simulation::advance(Seconds span) {
  machine.scheduler.advance(span);
  sampling.checkNothingIsMissing();
  connectivity.checkNothingIsMissing();
  toolModel.checkNothingIsMissing();
}

} // namespace tidewell::test
