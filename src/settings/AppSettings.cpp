#include "settings/AppSettings.h"

#include "platform/DefaultsStore.h"
#include "platform/LoginItem.h"
#include "settings/SettingsKeys.h"

#include <cstddef>
#include <cstdio>
#include <optional>
#include <utility>

namespace tidewell {

namespace keys = settingsKeys;

AppSettings& AppSettings::shared() {
  static AppSettings settings;
  return settings;
}

void AppSettings::attach(DefaultsStore& store, LoginItem& loginItem) {
  m_store = &store;
  m_loginItem = &loginItem;
}

void AppSettings::detach() {
  m_store = nullptr;
  m_loginItem = nullptr;
}

bool AppSettings::launchAtLogin() const { return readBool(keys::launchAtLogin, false); }
void AppSettings::setLaunchAtLogin(bool value) {
  write(keys::launchAtLogin, value);
  updateLaunchAtLogin();
}

bool AppSettings::checkForUpdates() const { return readBool(keys::checkForUpdates, true); }
void AppSettings::setCheckForUpdates(bool value) { write(keys::checkForUpdates, value); }

double AppSettings::refreshInterval() const { return readDouble(keys::refreshInterval, 2.0); }
void AppSettings::setRefreshInterval(double value) { write(keys::refreshInterval, value); }

std::string AppSettings::monitorInterface() const {
  if (m_store == nullptr) {
    return "all";
  }
  return asExactly<std::string>(m_store->value(keys::monitorInterface)).value_or("all");
}
void AppSettings::setMonitorInterface(std::string value) {
  write(keys::monitorInterface, std::move(value));
}

bool AppSettings::trackPerProcess() const { return readBool(keys::trackPerProcess, true); }
void AppSettings::setTrackPerProcess(bool value) { write(keys::trackPerProcess, value); }

double AppSettings::slowSpeedThreshold() const {
  return readDouble(keys::slowSpeedThreshold, 10.0);
}
void AppSettings::setSlowSpeedThreshold(double value) { write(keys::slowSpeedThreshold, value); }

double AppSettings::highLatencyThreshold() const {
  return readDouble(keys::highLatencyThreshold, 100.0);
}
void AppSettings::setHighLatencyThreshold(double value) {
  write(keys::highLatencyThreshold, value);
}

bool AppSettings::showNotifications() const { return readBool(keys::showNotifications, true); }
void AppSettings::setShowNotifications(bool value) { write(keys::showNotifications, value); }

bool AppSettings::hasCompletedOnboarding() const {
  return readBool(keys::hasCompletedOnboarding, false);
}
void AppSettings::setHasCompletedOnboarding(bool value) {
  write(keys::hasCompletedOnboarding, value);
}

std::int64_t AppSettings::dataRetentionDays() const {
  constexpr std::int64_t byDefault = 30;
  if (m_store == nullptr) {
    return byDefault;
  }
  return asExactly<std::int64_t>(m_store->value(keys::dataRetentionDays)).value_or(byDefault);
}
void AppSettings::setDataRetentionDays(std::int64_t value) {
  write(keys::dataRetentionDays, value);
}

bool AppSettings::showUploadInMenubar() const { return readBool(keys::showUploadInMenubar, true); }
void AppSettings::setShowUploadInMenubar(bool value) { write(keys::showUploadInMenubar, value); }

bool AppSettings::readBool(std::string_view key, bool byDefault) const {
  return m_store == nullptr ? byDefault : asExactly<bool>(m_store->value(key)).value_or(byDefault);
}

double AppSettings::readDouble(std::string_view key, double byDefault) const {
  return m_store == nullptr ? byDefault : asDouble(m_store->value(key)).value_or(byDefault);
}

template <class T> void AppSettings::write(std::string_view key, T value) {
  if (m_store != nullptr) {
    m_store->set(key, DefaultsValue(std::move(value)));
  }
}

void AppSettings::updateLaunchAtLogin() {
  if (m_loginItem == nullptr) {
    return;
  }
  const std::optional<std::string> error =
      launchAtLogin() ? m_loginItem->registerItem() : m_loginItem->unregisterItem();
  if (error) {
    const std::string line = "Launch at login error: " + *error + "\n";
    // A standard output that takes no line leaves nobody to tell.
    [[maybe_unused]] const std::size_t written = std::fwrite(line.data(), 1, line.size(), stdout);
    [[maybe_unused]] const int result = std::fflush(stdout);
  }
}

} // namespace tidewell
