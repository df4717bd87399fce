#pragma once

#include "base/Observers.h"
#include "base/Scheduler.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace tidewell {

class AppSettings;
class BandwidthSampler;
class NetworkMonitor;
class NotificationCenter;
class NotificationService;
class PreferencesStore;
class ProcessTracker;
class SpeedTestRunner;
struct Platform;

/// The delegate's dependencies besides the platform. Borrowed; they outlive the delegate.
struct AppEnvironment {
  AppSettings& settings;
  PreferencesStore& preferences;
  NotificationCenter& notificationCenter;
  NotificationService& notifications;
};

/// Owns the long-lived services and connects them with each other, the preferences and the notices.
class AppDelegate {
public:
  /// Makes the services. Only the connectivity monitor starts at once.
  AppDelegate(const Platform& platform, const AppEnvironment& environment);
  AppDelegate(AppDelegate&&) = delete;
  ~AppDelegate();

  /// Subscribes, then starts sampling and, if enabled, process tracking.
  void applicationDidFinishLaunching();

  /// Stops only the timers.
  void applicationWillTerminate();

  [[nodiscard]] NetworkMonitor& networkMonitor() { return *m_networkMonitor; }
  [[nodiscard]] BandwidthSampler& bandwidthSampler() { return *m_bandwidthSampler; }
  [[nodiscard]] ProcessTracker& processTracker() { return *m_processTracker; }
  [[nodiscard]] SpeedTestRunner& speedTest() { return *m_speedTest; }

private:
  void subscribeToConnectivity();
  void subscribeToMeasurements();
  void observeSettings();
  void connectivityChanged(bool isConnected);
  void downloadRateChanged(std::int64_t bytesPerSec);
  void latencyChanged(double latencyMs);
  void refreshIntervalChanged(Seconds interval);
  /// Starts or stops tracking; does nothing for the value that is in force.
  void trackProcesses(bool isOn);

  AppEnvironment m_environment;
  std::shared_ptr<NetworkMonitor> m_networkMonitor;
  std::shared_ptr<BandwidthSampler> m_bandwidthSampler;
  std::shared_ptr<ProcessTracker> m_processTracker;
  std::shared_ptr<SpeedTestRunner> m_speedTest;
  // Initially true, so that the first report of a live connection posts nothing.
  bool m_wasConnected = true;
  bool m_isTracking = false;
  std::vector<Subscription> m_cancellables; // destroyed first: no observer outlives what it uses
};

} // namespace tidewell
