#include "ui/application/Preferences.h"

#include "platform/linux/files/FilePath.h"

#include <unistd.h>

namespace tidewell {

Preferences::Preferences(const std::string& resident)
    : m_file(configurationDirectory() + "/tidewell/preferences.toml", m_queue, qtWatch()),
      m_loginItem(configurationDirectory(), resident) {
  settings().attach(m_file, m_loginItem);
}

Preferences::~Preferences() { settings().detach(); }

std::string residentProgram(const std::string& windowsProgram) {
  // .../libexec/tidewell/tidewell-windows
  const std::string prefix = directoryOf(directoryOf(directoryOf(windowsProgram)));
  const std::string built = prefix + "/src/tidewell";
  return ::access(built.c_str(), X_OK) == 0 ? built : prefix + "/bin/tidewell";
}

} // namespace tidewell
