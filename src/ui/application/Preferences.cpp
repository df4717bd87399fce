#include "ui/application/Preferences.h"

#include "platform/linux/files/FilePath.h"

#include <sys/stat.h>
#include <unistd.h>

namespace tidewell {

namespace {

bool isProgram(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
         ::access(path.c_str(), X_OK) == 0;
}

} // namespace

Preferences::Preferences(const std::string& resident)
    : m_file(configurationDirectory() + "/tidewell/preferences.toml", m_queue, qtWatch()),
      m_loginItem(configurationDirectory(), resident) {
  settings().attach(m_file, m_loginItem);
}

Preferences::~Preferences() { settings().detach(); }

std::string residentProgram(const std::string& windowsProgram) {
  // .../libexec/tidewell/tidewell-windows
  const std::string prefix = directoryOf(directoryOf(directoryOf(windowsProgram)));
  const std::string installed = prefix + "/bin/tidewell";
  const std::string built = prefix + "/src/tidewell";
  return !isProgram(installed) && isProgram(built) ? built : installed;
}

} // namespace tidewell
