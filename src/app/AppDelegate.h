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

/// What the delegate works with besides the platform. Borrowed; outlives the delegate.
struct AppEnvironment {
  AppSettings& settings;
  PreferencesStore& preferences;
  NotificationCenter& notificationCenter;
  NotificationService& notifications;
};

/// Owns the long-lived services and wires them to each other, to the preferences and to the
/// notices.
class AppDelegate {
public:
  /// Makes the services. The connectivity monitor watches from now on, the others wait.
  AppDelegate(const Platform& platform, const AppEnvironment& environment);
  AppDelegate(const AppDelegate&) = delete;
  AppDelegate& operator=(const AppDelegate&) = delete;
  ~AppDelegate();

  /// Makes the subscriptions, then starts sampling and, if the user wants it, process tracking.
  void applicationDidFinishLaunching();

  /// Stops the timers, and nothing else.
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
  void trackPerProcessChanged(bool isOn);

  AppEnvironment m_environment;
  std::shared_ptr<NetworkMonitor> m_networkMonitor;
  std::shared_ptr<BandwidthSampler> m_bandwidthSampler;
  std::shared_ptr<ProcessTracker> m_processTracker;
  std::shared_ptr<SpeedTestRunner> m_speedTest;
  // True at first, so that the first report of a live connection posts nothing.
  bool m_wasConnected = true;
  std::vector<Subscription> m_cancellables; // last: no observer outlives what it uses
};

} // namespace tidewell
