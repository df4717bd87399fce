#include "app/AppDelegate.h"

#include "alerts/NotificationService.h"
#include "connectivity/NetworkMonitor.h"
#include "platform/NotificationCenter.h"
#include "platform/Platform.h"
#include "platform/PreferencesStore.h"
#include "processes/ProcessTracker.h"
#include "sampling/BandwidthSampler.h"
#include "settings/AppSettings.h"
#include "speedtest/SpeedTestRunner.h"

namespace tidewell {
namespace {

constexpr Seconds trackerInterval = 10.0;

// Replaces a stored interval that is not a positive number.
constexpr Seconds usualInterval = 2.0;

// Below ten kilobits per second a line is idle rather than slow.
constexpr double idleMbps = 0.01;

} // namespace

AppDelegate::AppDelegate(const Platform& platform, const AppEnvironment& environment)
    : m_environment(environment), m_networkMonitor(NetworkMonitor::make(platform)),
      m_bandwidthSampler(std::make_shared<BandwidthSampler>(platform)),
      m_processTracker(std::make_shared<ProcessTracker>(platform)),
      m_speedTest(std::make_shared<SpeedTestRunner>(platform)) {}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching() {
  m_environment.notificationCenter.requestAuthorization();
  subscribeToConnectivity();
  subscribeToMeasurements();
  observeSettings();
  const double interval = m_environment.settings.refreshInterval();
  m_bandwidthSampler->start(interval > 0.0 ? interval : usualInterval);
  trackProcesses(m_environment.settings.trackPerProcess());
}

void AppDelegate::applicationWillTerminate() {
  m_bandwidthSampler->stop();
  trackProcesses(false);
}

void AppDelegate::subscribeToConnectivity() {
  auto& isConnected = m_networkMonitor->isConnected;
  m_cancellables.push_back(isConnected.subscribe(
      [this](bool connected) { m_bandwidthSampler->isConnected = connected; }));
  m_cancellables.push_back(
      isConnected.subscribe([this](bool connected) { connectivityChanged(connected); }));
}

void AppDelegate::subscribeToMeasurements() {
  m_cancellables.push_back(m_bandwidthSampler->currentDownloadBytesPerSec.subscribe(
      [this](std::int64_t bytesPerSec) { downloadRateChanged(bytesPerSec); }));
  m_cancellables.push_back(m_bandwidthSampler->latencyMs.subscribe(
      [this](double latencyMs) { latencyChanged(latencyMs); }));
}

void AppDelegate::observeSettings() {
  PreferencesStore& preferences = m_environment.preferences;
  m_cancellables.push_back(
      preferences.observe(preference::refreshInterval.key, [this](const auto& value) {
        refreshIntervalChanged(as<double>(value).value_or(0.0));
      }));
  m_cancellables.push_back(
      preferences.observe(preference::trackPerProcess.key, [this](const auto& value) {
        // A removed key reads as off. One of another type reads as in AppSettings.
        trackProcesses(value && as<bool>(value).value_or(preference::trackPerProcess.byDefault));
      }));
}

void AppDelegate::connectivityChanged(bool isConnected) {
  if (isConnected && !m_wasConnected) {
    m_environment.notifications.notifyConnectionRestored();
  }
  if (!isConnected && m_wasConnected) {
    m_environment.notifications.notifyConnectionLost();
  }
  m_wasConnected = isConnected;
}

void AppDelegate::downloadRateChanged(std::int64_t bytesPerSec) {
  const double mbps = static_cast<double>(bytesPerSec) * 8.0 / 1e6;
  const double threshold = m_environment.settings.slowSpeedThreshold();
  if (mbps > idleMbps && mbps < threshold) {
    m_environment.notifications.notifySpeedDrop(mbps, threshold);
  }
}

void AppDelegate::latencyChanged(double latencyMs) {
  const double threshold = m_environment.settings.highLatencyThreshold();
  if (latencyMs > 0.0 && latencyMs > threshold) {
    m_environment.notifications.notifyHighLatency(latencyMs, threshold);
  }
}

void AppDelegate::refreshIntervalChanged(Seconds interval) {
  if (interval > 0.0) {
    m_bandwidthSampler->stop();
    m_bandwidthSampler->start(interval);
  }
}

void AppDelegate::trackProcesses(bool isOn) {
  if (isOn == m_isTracking) {
    return;
  }
  m_isTracking = isOn;
  if (isOn) {
    m_processTracker->start(trackerInterval);
  } else {
    m_processTracker->stop();
  }
}

} // namespace tidewell
