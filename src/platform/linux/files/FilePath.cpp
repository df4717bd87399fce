#include "platform/linux/files/FilePath.h"

#include <array>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstdlib>

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tidewell {
namespace {

// The kernel follows at most 40 symlinks (path_resolution(7)).
constexpr std::size_t mostLinks = 40;

std::string withoutTrailingSlashes(std::string path) {
  while (path.size() > 1 && path.ends_with('/')) {
    path.pop_back();
  }
  return path;
}

std::error_code makeDirectory(const std::string& path) {
  constexpr mode_t forTheUserAlone = 0700;
  if (::mkdir(path.c_str(), forTheUserAlone) == 0) {
    return {};
  }
  const std::error_code error = lastError();
  struct stat status {};
  if (::stat(path.c_str(), &status) == 0) {
    return S_ISDIR(status.st_mode) ? std::error_code{}
                                   : std::make_error_code(std::errc::not_a_directory);
  }
  return error;
}

bool isAbsolute(const char* path) { return path != nullptr && *path == '/'; }

std::string homeOfUser() {
  std::array<char, 4096> buffer{};
  passwd entry{};
  passwd* found = nullptr;
  ::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found);
  return found != nullptr && isAbsolute(found->pw_dir) ? found->pw_dir : "/";
}

/// `chosen` if it is an absolute path, else this path below the home directory.
std::string userDirectory(const char* chosen, const char* home, const char* below) {
  if (isAbsolute(chosen)) {
    return chosen;
  }
  return (isAbsolute(home) ? home : homeOfUser()) + below;
}

} // namespace

std::error_code lastError() { return {errno, std::generic_category()}; }

std::string runningProgram() {
  constexpr std::string_view deletedMark = " (deleted)"; // proc_pid_exe(5)
  std::array<char, PATH_MAX> buffer{};
  const ssize_t size = ::readlink("/proc/self/exe", buffer.data(), buffer.size());
  std::string path(buffer.data(), static_cast<std::size_t>(size > 0 ? size : 0));
  if (path.ends_with(deletedMark) && ::access(path.c_str(), F_OK) != 0) {
    path.resize(path.size() - deletedMark.size());
  }
  return path;
}

std::string directoryOf(const std::string& path) {
  const std::size_t slash = path.find_last_of('/');
  if (slash == std::string::npos) {
    return ".";
  }
  return slash == 0 ? "/" : withoutTrailingSlashes(path.substr(0, slash));
}

std::string nameOf(const std::string& path) { return path.substr(path.find_last_of('/') + 1); }

std::vector<std::string> linkChain(const std::string& path) {
  std::vector<std::string> chain{path};
  std::array<char, PATH_MAX> target{};
  while (chain.size() <= mostLinks) {
    const ssize_t size = ::readlink(chain.back().c_str(), target.data(), target.size());
    if (size <= 0) {
      break;
    }
    const std::string next(target.data(), static_cast<std::size_t>(size));
    chain.push_back(next.starts_with('/') ? next : directoryOf(chain.back()) + "/" + next);
  }
  return chain;
}

std::error_code makeDirectories(const std::string& path) {
  const std::error_code error = makeDirectory(path);
  if (error != std::errc::no_such_file_or_directory || path == directoryOf(path)) {
    return error;
  }
  const std::error_code errorAbove = makeDirectories(directoryOf(path));
  return errorAbove ? errorAbove : makeDirectory(path);
}

std::string configurationDirectory(const char* xdgConfigHome, const char* home) {
  return userDirectory(xdgConfigHome, home, "/.config");
}

std::string configurationDirectory() {
  return configurationDirectory(std::getenv("XDG_CONFIG_HOME"), std::getenv("HOME"));
}

std::string stateDirectory(const char* xdgStateHome, const char* home) {
  return userDirectory(xdgStateHome, home, "/.local/state");
}

std::string stateDirectory() {
  return stateDirectory(std::getenv("XDG_STATE_HOME"), std::getenv("HOME"));
}

} // namespace tidewell
