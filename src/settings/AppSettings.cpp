#include "settings/AppSettings.h"

#include "platform/LoginItem.h"

#include <cstddef>
#include <cstdio>
#include <optional>
#include <string>

namespace tidewell {

AppSettings& AppSettings::shared() {
  static AppSettings settings;
  return settings;
}

void AppSettings::attach(PreferencesStore& store, LoginItem& loginItem) {
  m_store = &store;
  m_loginItem = &loginItem;
}

void AppSettings::detach() {
  m_store = nullptr;
  m_loginItem = nullptr;
}

std::error_code AppSettings::setLaunchAtLogin(bool value) {
  const std::error_code error = write(preference::launchAtLogin, value);
  if (!error) {
    updateLaunchAtLogin();
  }
  return error;
}

void AppSettings::updateLaunchAtLogin() {
  if (m_loginItem == nullptr) {
    return;
  }
  const std::optional<std::string> error =
      launchAtLogin() ? m_loginItem->registerItem() : m_loginItem->unregisterItem();
  if (error) {
    const std::string line = "Launch at login error: " + *error + "\n";
    // If standard output fails, there is nowhere to report it.
    [[maybe_unused]] const std::size_t written = std::fwrite(line.data(), 1, line.size(), stdout);
    [[maybe_unused]] const int result = std::fflush(stdout);
  }
}

} // namespace tidewell
