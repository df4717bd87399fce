#include "app/AppDelegate.h"

#include "base/Service.h"
#include "platform/DefaultsStore.h"
#include "platform/Platform.h"
#include "settings/AppSettings.h"
#include "settings/SettingsKeys.h"

#include <string>

namespace tidewell {

namespace {

// What a stored interval that is no positive number is taken for at launch.
constexpr Seconds usualInterval = 2.0;

} // namespace

AppDelegate::AppDelegate(const Platform& platform, AppSettings& settings, DefaultsStore& defaults)
    : m_settings(settings), m_defaults(defaults),
      m_bandwidthSampler(makeService<BandwidthSampler>(platform.scheduler.main(), platform)) {}

void AppDelegate::applicationDidFinishLaunching() {
  m_cancellables.push_back(
      m_defaults.observe(std::string(settingsKeys::refreshInterval), [this](const auto& value) {
        const double interval = asDouble(value).value_or(0.0);
        if (interval > 0.0) {
          restartSampler(interval);
        }
      }));
  const double interval = m_settings.refreshInterval();
  m_bandwidthSampler->start(interval > 0.0 ? interval : usualInterval);
}

void AppDelegate::applicationWillTerminate() { m_bandwidthSampler->stop(); }

void AppDelegate::restartSampler(Seconds interval) {
  m_bandwidthSampler->stop();
  m_bandwidthSampler->start(interval);
}

} // namespace tidewell
