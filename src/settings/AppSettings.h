#pragma once

#include "platform/PreferencesStore.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <type_traits>
#include <utility>

namespace tidewell {

class LoginItem;

/// A preference: the key under which it is stored, and its value while the key is absent.
template <class T> struct Preference {
  std::string_view key;
  std::conditional_t<std::is_same_v<T, std::string>, std::string_view, T> byDefault;
};

/// Every preference. A key is spelled like its property of `AppSettings`.
namespace preference {

/// Start with the user's session.
inline constexpr Preference<bool> launchAtLogin{"launchAtLogin", false};
inline constexpr Preference<bool> checkForUpdates{"checkForUpdates", true};
/// Sampling interval in seconds.
inline constexpr Preference<double> refreshInterval{"refreshInterval", 2.0};
inline constexpr Preference<std::string> monitorInterface{"monitorInterface", "all"};
inline constexpr Preference<bool> trackPerProcess{"trackPerProcess", true};
/// Megabits per second below which a download counts as slow.
inline constexpr Preference<double> slowSpeedThreshold{"slowSpeedThreshold", 10.0};
/// Milliseconds above which latency counts as high.
inline constexpr Preference<double> highLatencyThreshold{"highLatencyThreshold", 100.0};
inline constexpr Preference<bool> showNotifications{"showNotifications", true};
inline constexpr Preference<bool> hasCompletedOnboarding{"hasCompletedOnboarding", false};
inline constexpr Preference<std::int64_t> dataRetentionDays{"dataRetentionDays", 30};
inline constexpr Preference<bool> showUploadInMenubar{"showUploadInMenubar", true};

} // namespace preference

/// The user's preferences as typed properties.
///
/// Reading a property returns the stored value, or the default if the key is absent or holds
/// another type. Writing one stores it at once, or returns why it could not be stored. Nothing is
/// cached and no value is checked.
class AppSettings {
public:
  AppSettings() = default;
  /// Like `attach`.
  AppSettings(PreferencesStore& store, LoginItem& loginItem)
      : m_store(&store), m_loginItem(&loginItem) {}
  AppSettings(AppSettings&&) = delete;

  /// The process's preferences, created on first use.
  [[nodiscard]] static AppSettings& shared();

  /// Borrows a store and a login item until `detach`. Without them every property reads as its
  /// default, and writes are dropped.
  void attach(PreferencesStore& store, LoginItem& loginItem);
  void detach();

  [[nodiscard]] bool launchAtLogin() const { return read(preference::launchAtLogin); }
  /// Also registers or unregisters the login item once the value is stored. If that fails, prints
  /// one line with the reason to standard output; the stored value stays.
  std::error_code setLaunchAtLogin(bool value);

  [[nodiscard]] bool checkForUpdates() const { return read(preference::checkForUpdates); }
  std::error_code setCheckForUpdates(bool value) {
    return write(preference::checkForUpdates, value);
  }

  [[nodiscard]] double refreshInterval() const { return read(preference::refreshInterval); }
  std::error_code setRefreshInterval(double value) {
    return write(preference::refreshInterval, value);
  }

  [[nodiscard]] std::string monitorInterface() const { return read(preference::monitorInterface); }
  std::error_code setMonitorInterface(std::string value) {
    return write(preference::monitorInterface, std::move(value));
  }

  [[nodiscard]] bool trackPerProcess() const { return read(preference::trackPerProcess); }
  std::error_code setTrackPerProcess(bool value) {
    return write(preference::trackPerProcess, value);
  }

  [[nodiscard]] double slowSpeedThreshold() const { return read(preference::slowSpeedThreshold); }
  std::error_code setSlowSpeedThreshold(double value) {
    return write(preference::slowSpeedThreshold, value);
  }

  [[nodiscard]] double highLatencyThreshold() const {
    return read(preference::highLatencyThreshold);
  }
  std::error_code setHighLatencyThreshold(double value) {
    return write(preference::highLatencyThreshold, value);
  }

  [[nodiscard]] bool showNotifications() const { return read(preference::showNotifications); }
  std::error_code setShowNotifications(bool value) {
    return write(preference::showNotifications, value);
  }

  [[nodiscard]] bool hasCompletedOnboarding() const {
    return read(preference::hasCompletedOnboarding);
  }
  std::error_code setHasCompletedOnboarding(bool value) {
    return write(preference::hasCompletedOnboarding, value);
  }

  [[nodiscard]] std::int64_t dataRetentionDays() const {
    return read(preference::dataRetentionDays);
  }
  std::error_code setDataRetentionDays(std::int64_t value) {
    return write(preference::dataRetentionDays, value);
  }

  [[nodiscard]] bool showUploadInMenubar() const { return read(preference::showUploadInMenubar); }
  std::error_code setShowUploadInMenubar(bool value) {
    return write(preference::showUploadInMenubar, value);
  }

private:
  template <class T> [[nodiscard]] T read(const Preference<T>& preference) const {
    const auto stored = m_store == nullptr ? std::nullopt : as<T>(m_store->value(preference.key));
    return stored.value_or(T(preference.byDefault));
  }
  template <class T> std::error_code write(const Preference<T>& preference, T value) {
    return m_store == nullptr ? std::error_code{}
                              : m_store->set(preference.key, PreferenceValue(std::move(value)));
  }
  void updateLaunchAtLogin();

  PreferencesStore* m_store = nullptr;
  LoginItem* m_loginItem = nullptr;
};

} // namespace tidewell
