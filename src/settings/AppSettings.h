#pragma once

#include "base/Observers.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace tidewell {

class DefaultsStore;
class LoginItem;

/// The user's preferences: one typed property for each key of the defaults store.
///
/// Reading a property gives the stored value, or the property's default when the key is absent or
/// holds another type; writing one stores it at once. Nothing is cached and no value is checked.
/// Any thread, except where noted.
class AppSettings {
public:
  AppSettings() = default;
  /// Like `attach`.
  AppSettings(DefaultsStore& store, LoginItem& loginItem)
      : m_store(&store), m_loginItem(&loginItem) {}
  AppSettings(const AppSettings&) = delete;
  AppSettings& operator=(const AppSettings&) = delete;
  ~AppSettings() = default;

  /// The process's preferences, made on first use.
  [[nodiscard]] static AppSettings& shared();

  /// Gives the preferences their store and login item, which are borrowed until `detach`. Before,
  /// every property reads as its default and writes go nowhere. Main thread, before others read.
  void attach(DefaultsStore& store, LoginItem& loginItem);

  /// Lets go of the store and the login item. Main thread, after others have stopped reading.
  void detach();

  /// Start with the user's session. Writing it registers or unregisters the login item; when that
  /// fails, one line on standard output says why and the stored value stays.
  [[nodiscard]] bool launchAtLogin() const;
  void setLaunchAtLogin(bool value);

  [[nodiscard]] bool checkForUpdates() const;
  void setCheckForUpdates(bool value);

  /// Sampling interval in seconds.
  [[nodiscard]] double refreshInterval() const;
  void setRefreshInterval(double value);

  [[nodiscard]] std::string monitorInterface() const;
  void setMonitorInterface(std::string value);

  [[nodiscard]] bool trackPerProcess() const;
  void setTrackPerProcess(bool value);

  /// Megabits per second below which a download counts as slow.
  [[nodiscard]] double slowSpeedThreshold() const;
  void setSlowSpeedThreshold(double value);

  /// Milliseconds above which latency counts as high.
  [[nodiscard]] double highLatencyThreshold() const;
  void setHighLatencyThreshold(double value);

  [[nodiscard]] bool showNotifications() const;
  void setShowNotifications(bool value);

  [[nodiscard]] bool hasCompletedOnboarding() const;
  void setHasCompletedOnboarding(bool value);

  [[nodiscard]] std::int64_t dataRetentionDays() const;
  void setDataRetentionDays(std::int64_t value);

  [[nodiscard]] bool showUploadInMenubar() const;
  void setShowUploadInMenubar(bool value);

private:
  [[nodiscard]] bool readBool(std::string_view key, bool byDefault) const;
  [[nodiscard]] double readDouble(std::string_view key, double byDefault) const;
  template <class T> void write(std::string_view key, T value);
  void updateLaunchAtLogin();

  DefaultsStore* m_store = nullptr;
  LoginItem* m_loginItem = nullptr;
};

} // namespace tidewell
