#include "Simulation.h"

#include "CountedMemory.h"
#include "Preferences.h"
#include "connectivity/NetworkMonitor.h"
#include "processes/ProcessTracker.h"
#include "sampling/BandwidthSampler.h"
#include "speedtest/SpeedTestRunner.h"

#include <chrono>
#include <csignal>
#include <string>
#include <system_error>

#include <sys/resource.h>

namespace tidewell::test {

namespace {

// Longer than killing a child takes.
constexpr Seconds ending = 0.5;

// A restarting panel has twenty seconds to come back.
constexpr Ticks patience = std::chrono::seconds(21);

// The program retries within a minute, and a call may take half a minute.
constexpr Ticks longestDelay = std::chrono::seconds(95);

// One turn for each message and task of a moment is normal; thousands mean a busy loop.
constexpr int mostTurns = 5000;

/// While it lives, no file of this process can grow.
class FullDisk {
public:
  FullDisk() {
    static_cast<void>(std::signal(SIGXFSZ, SIG_IGN));
    ::getrlimit(RLIMIT_FSIZE, &m_before);
    const rlimit none{0, m_before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &none);
  }
  FullDisk(FullDisk&&) = delete;
  ~FullDisk() { ::setrlimit(RLIMIT_FSIZE, &m_before); }

private:
  rlimit m_before{};
};

} // namespace

Simulation::Simulation(std::uint64_t seed) : dice(seed), machine(seed) {}

Simulation::~Simulation() {
  CountedMemory::makePlenty();
  destroy();
}

bool Simulation::play(const VirtualProcesses::Pointer& process) {
  const std::string& path = process->executable;
  const std::string name = path.substr(path.rfind('/') + 1);
  if (name == "notificationSound") {
    noticeServer.hearsSound();
  }
  return name == "tidewell-windows" ? windows.play(process) : tools.play(name, process);
}

void Simulation::Center::add(NotificationRequest request) {
  world.notices.add(request);
  if (world.m_resident) {
    world.noticeServer.expects(request);
    world.m_resident->notices.add(std::move(request));
  }
}

void Simulation::make() {
  m_isLaunched = false;
  m_isAskedToEnd = false;
  m_madeAt = machine.scheduler.now();
  const Surroundings surroundings{loop,
                                  machine.scheduler,
                                  machine.clock,
                                  traffic,
                                  machine.configuration,
                                  machine.addresses,
                                  machine.paths,
                                  settings,
                                  store,
                                  m_center,
                                  m_notifications,
                                  bus.address(),
                                  [this](ChildProcess::Id child) { toolModel.terminates(child); },
                                  [this](const auto& body) { lookedUp(body); }};
  observePath();
  m_resident = std::make_unique<Resident>(
      surroundings, [this] { m_isAskedToEnd = true; },
      [this](const WindowRequest& request) { windows.asked(request); },
      [this] { toolModel.asksForSpeedTest(); });
  m_resident->http.setPathSatisfied(!m_path || m_path->isSatisfied);
  connectivity.adopt(m_resident->delegate.networkMonitor(), m_path);
  sampling.adopt(m_resident->delegate.bandwidthSampler());
  toolModel.adopt(m_resident->delegate.processTracker(), m_resident->delegate.speedTest());
}

/// The program's first look: its watch begins with this path.
void Simulation::observePath() {
  m_path = m_actual.report;
  machine.paths.become(m_actual.report);
  paths.adopt(m_actual);
  m_reporter = std::make_unique<PathReporter>(loop, [this](const PathReport& path) {
    if (m_resident) {
      paths.reports(path);
      report(path);
    }
  });
  m_reporter->observe(m_actual);
}

void Simulation::become(const ObservedPath& path) {
  m_actual = path;
  paths.becomes(path);
  if (m_reporter) {
    m_reporter->observe(path);
  }
}

void Simulation::setSleeping(bool isSleeping) {
  if (isSleeping) {
    paths.sleeps();
  } else {
    paths.wakes();
  }
  if (m_reporter) {
    m_reporter->setSleeping(isSleeping);
  }
}

void Simulation::lookedUp(const std::optional<std::string>& body) {
  const bool hasAddress = body == "203.0.113.7\n"; // the others are none
  paths.lookedUp(hasAddress);
  m_reporter->lookedUp(hasAddress);
}

void Simulation::launch() {
  m_isLaunched = true;
  m_publishedBefore = sampling.published();
  notices.adopt();
  watchBefore();
  const auto& isConnected = m_resident->delegate.networkMonitor().isConnected;
  notices.beforeConnectivity(isConnected.get());
  const double interval = numberIn(store.value("refreshInterval"), 2.0);
  sampling.starts(interval > 0.0 ? interval : 2.0);
  toolModel.tracks(truthIn(store.value("trackPerProcess"), true));
  m_resident->delegate.applicationDidFinishLaunching();
  notices.afterwards();
  watchAfter();
}

/// Observers called before the program's own, which it registers when launched.
void Simulation::watchBefore() {
  auto& sampler = m_resident->delegate.bandwidthSampler();
  const auto on = [this](auto& published, auto tell) {
    auto isFirst = std::make_shared<bool>(true); // the current value, not a publication
    m_subscriptions.push_back(published.subscribe([isFirst, tell](const auto& value) {
      if (!*isFirst) {
        tell(value);
      }
      *isFirst = false;
    }));
  };
  on(m_resident->delegate.networkMonitor().isConnected,
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
    toolModel.tracks(value && truthIn(value, true)); // a removed key reads as off
  }));
}

/// Observers called after the program's own.
void Simulation::watchAfter() {
  auto& sampler = m_resident->delegate.bandwidthSampler();
  auto& monitor = m_resident->delegate.networkMonitor();
  const auto check = [this](const auto& /*value*/) {
    notices.afterwards();
    panel.check(m_resident->delegate.bandwidthSampler(), m_resident->delegate.networkMonitor());
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
    toolModel.tracks(false);
    m_resident->delegate.applicationWillTerminate();
  }
}

void Simulation::destroy() {
  if (!m_resident) {
    return;
  }
  m_subscriptions.clear();
  m_isLaunched = false;
  sampling.release();
  connectivity.release();
  paths.release();
  toolModel.release();
  windows.release();
  noticeServer.forget();
  host.release();
  reader.release();
  // The queues end with their waiting tasks, then everything else.
  m_reporter.reset();
  m_resident->retire();
  machine.scheduler.endBackground();
  machine.scheduler.advance(ending);
  m_resident.reset();
  processes.orphanAll();
  machine.scheduler.settle();
}

void Simulation::report(const PathReport& path) {
  if (machine.paths.isWatched()) {
    connectivity.reports(path);
  }
  if (m_resident) {
    m_resident->http.setPathSatisfied(path.isSatisfied);
  }
  if (m_path == path) {
    machine.paths.report(path);
  } else {
    machine.paths.become(path);
  }
  m_path = path;
}

void Simulation::askForSpeedTest() {
  if (m_resident) {
    toolModel.asksForSpeedTest();
    m_resident->delegate.speedTest().run();
  }
}

void Simulation::advance(Seconds span) {
  machine.scheduler.advance(span);
  sampling.checkNothingIsMissing();
  connectivity.checkNothingIsMissing();
  paths.check();
  checkDetails();
  toolModel.checkNothingIsMissing();
  preferences.check(store);
  findings.require(processes.faults() == 0,
                   "a signal to a stranger, or a wait for a process that lives");
  findings.require(loop.mostTurns() < mostTurns, "the loop turns in vain", loop.mostTurns());
  windows.check();
  noticeServer.check();
  // Before the first sample an item may show its initial values.
  if (m_isLaunched && sampling.published() > m_publishedBefore) {
    checkDesktop();
  }
}

void Simulation::checkDetails() {
  if (m_resident && paths.isUpToDate() && connectivity.isComplete()) {
    const auto& servers = machine.configuration.servers;
    const std::string& dns = m_resident->delegate.networkMonitor().connectionInfo.get().dns;
    findings.require(dns == (servers ? servers->front() : "--"), "the DNS server", dns);
  }
}

void Simulation::checkDesktop() {
  auto& sampler = m_resident->delegate.bandwidthSampler();
  auto& monitor = m_resident->delegate.networkMonitor();
  auto& speedTest = m_resident->delegate.speedTest();
  const ExpectedItem item = panel.item(sampler, monitor, speedTest.isRunning.get());
  host.check(item);
  reader.check(sampler, monitor, speedTest, item.label);
  reader.checkSamples(sampling.published());
  const Ticks age = machine.scheduler.now() - m_madeAt;
  findings.require(!bus.hasBeenUpFor(longestDelay) || age <= longestDelay || bus.isServing(),
                   "the program does not come back to the bus");
  findings.require(!bus.hasBeenUpFor(2 * longestDelay) || age <= 2 * longestDelay ||
                       !host.hasBeenWillingFor(longestDelay) || host.hasItem(),
                   "the program does not come back to the panel");
  const Ticks since = machine.scheduler.now() - std::max(host.changedAt(), m_madeAt);
  if (since > patience && bus.isSettled()) {
    windows.checkItem(host.hasItem());
  }
}

void Simulation::calmDesktop() {
  bus.setHanging(false);
  bus.hasOtherInstance = false;
  bus.comeUp();
  host.setManner(0, 0.0);
  host.start();
  noticeServer.setManner(NoticeServer::Manner::answers);
  noticeServer.setInhibited(false);
  noticeServer.start();
  windows.calmDown();
}

void Simulation::forgetDesktop() {
  noticeServer.forget();
  windows.forget();
  machine.scheduler.forgetLabels();
}

void Simulation::prefer(const std::string& key, const PreferenceValue& value) {
  const auto before = store.value(key);
  std::optional<FullDisk> full;
  if (isDiskFull) {
    full.emplace();
  }
  const std::error_code error = store.set(key, value);
  full.reset();
  findings.require(isDiskFull || !error, "a preference is not stored", key, error.message());
  if (!error) {
    preferences.sets(key, value);
  } else {
    ++m_refusals;
    const auto after = store.value(key);
    findings.require(before ? after && isSame(*after, *before) : !after,
                     "a preference that is not stored counts", key);
  }
}

} // namespace tidewell::test
