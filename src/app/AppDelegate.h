#pragma once

#include "base/Observers.h"
#include "sampling/BandwidthSampler.h"

#include <memory>
#include <vector>

namespace tidewell {

class AppSettings;
class DefaultsStore;
struct Platform;

/// Owns the long-lived services and wires them to each other and to the preferences.
///
/// Made, used and destroyed on the main thread.
class AppDelegate {
public:
  /// Makes the services; none is running yet. Borrows everything.
  AppDelegate(const Platform& platform, AppSettings& settings, DefaultsStore& defaults);

  /// Makes the subscriptions and starts sampling.
  void applicationDidFinishLaunching();

  /// Stops the timers, and nothing else.
  void applicationWillTerminate();

  [[nodiscard]] BandwidthSampler& bandwidthSampler() { return *m_bandwidthSampler; }

private:
  void restartSampler(Seconds interval);

  AppSettings& m_settings;
  DefaultsStore& m_defaults;
  std::shared_ptr<BandwidthSampler> m_bandwidthSampler;
  std::vector<Subscription> m_cancellables; // last, so that no observer outlives what it uses
};

} // namespace tidewell
