#pragma once

#include "platform/linux/files/AutostartLoginItem.h"
#include "platform/linux/preferences/PreferencesFile.h"
#include "settings/AppSettings.h"
#include "ui/application/QtQueue.h"

#include <memory>
#include <string>

namespace tidewell {

/// The user's preferences in the windows' process. Resident and windows share one file and watch it
/// for each other's changes.
class Preferences {
public:
  /// Reads them. `resident` is the absolute path of the program that starts at login.
  explicit Preferences(const std::string& resident);
  ~Preferences();

  [[nodiscard]] static AppSettings& settings() { return AppSettings::shared(); }
  [[nodiscard]] PreferencesStore& store() { return m_file; }

private:
  QtQueue m_queue;
  PreferencesFile m_file;
  AutostartLoginItem m_loginItem;
};

/// The path of the resident for a windows' process with this absolute path that the user started:
/// as installed, or in the build directory if only that program exists.
[[nodiscard]] std::string residentProgram(const std::string& windowsProgram);

} // namespace tidewell
