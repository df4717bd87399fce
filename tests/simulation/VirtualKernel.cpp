// Replacements for the program's calls that start processes, wait for them and look for programs.
// The linker redirects the calls here (--wrap); libraries keep the real functions.

#include "VirtualProcesses.h"
#include "platform/linux/process/SpawnSettings.h"

#include <cstring>
#include <map>
#include <utility>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

using tidewell::test::VirtualProcesses;

namespace {

using Descriptors = std::map<int, tidewell::FileDescriptor>;

/// The contents of each settings object.
std::map<const tidewell::SpawnSettings*, Descriptors>& prepared() {
  static std::map<const tidewell::SpawnSettings*, Descriptors> all;
  return all;
}

} // namespace

namespace tidewell {

SpawnSettings::SpawnSettings() { prepared()[this]; }

SpawnSettings::~SpawnSettings() { prepared().erase(this); }

void SpawnSettings::open(int target, const char* path, int flags) {
  prepared()[this][target] = FileDescriptor(::open(path, flags | O_CLOEXEC));
}

void SpawnSettings::duplicate(int descriptor, int target) {
  prepared()[this][target] = FileDescriptor(::fcntl(descriptor, F_DUPFD_CLOEXEC, 0));
}

pid_t SpawnSettings::spawn(const std::string& executable, std::vector<std::string> arguments,
                           std::vector<std::string> /*environment*/, bool /*yields*/) const {
  return VirtualProcesses::current().spawn(executable, arguments,
                                           std::exchange(prepared()[this], {}));
}

int openProcess(pid_t pid) { return VirtualProcesses::current().open(pid); }

} // namespace tidewell

extern "C" {

int __real_access(const char* path, int mode);

int __wrap_kill(pid_t id, int signal) { return VirtualProcesses::current().kill(id, signal); }

pid_t __wrap_waitpid(pid_t id, int* status, int options) {
  return VirtualProcesses::current().wait(id, status, options);
}

/// The program's helpers and ping are always installed here.
int __wrap_access(const char* path, int mode) {
  if (std::strstr(path, "/libexec/tidewell/") != nullptr ||
      std::strcmp(path, "/usr/bin/ping") == 0) {
    return 0;
  }
  return __real_access(path, mode);
}
}
