#pragma once

#include "platform/linux/files/AutostartLoginItem.h"
#include "platform/linux/preferences/PreferencesFile.h"
#include "settings/AppSettings.h"
#include "ui/application/QtQueue.h"

#include <memory>
#include <string>

namespace tidewell {

/// The user's preferences in the process of the windows: the same file as the resident's, observed
/// like any other writer's. Main thread.
class Preferences {
public:
  /// Reads them. `resident` is the absolute path of the program that starts at login.
  explicit Preferences(const std::string& resident);
  Preferences(const Preferences&) = delete;
  Preferences& operator=(const Preferences&) = delete;
  ~Preferences();

  [[nodiscard]] static AppSettings& settings() { return AppSettings::shared(); }
  [[nodiscard]] PreferencesStore& store() { return m_file; }

private:
  QtQueue m_queue;
  PreferencesFile m_file;
  AutostartLoginItem m_loginItem;
};

/// The resident that belongs to a windows' process of this absolute path: where the distribution
/// or the build directory has it. Pure but for looking whether files exist.
[[nodiscard]] std::string residentProgram(const std::string& windowsProgram);

} // namespace tidewell
