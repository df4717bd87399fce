#include "platform/linux/files/ConfigurationDirectory.h"

#include <array>
#include <cstdlib>

#include <pwd.h>
#include <unistd.h>

namespace tidewell {

namespace {

bool isAbsolute(const char* path) { return path != nullptr && *path == '/'; }

std::string homeOfUser() {
  std::array<char, 4096> buffer{};
  passwd entry{};
  passwd* found = nullptr;
  ::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found);
  return found != nullptr && isAbsolute(found->pw_dir) ? found->pw_dir : "/";
}

} // namespace

std::string configurationDirectory(const char* xdgConfigHome, const char* home) {
  if (isAbsolute(xdgConfigHome)) {
    return xdgConfigHome;
  }
  return (isAbsolute(home) ? home : homeOfUser()) + "/.config";
}

std::string configurationDirectory() {
  return configurationDirectory(std::getenv("XDG_CONFIG_HOME"), std::getenv("HOME"));
}

} // namespace tidewell
