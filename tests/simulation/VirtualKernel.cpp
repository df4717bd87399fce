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

namespace tidewell {

void SpawnSettings::open(int target, const char* path, int flags) {
  m_copies.emplace_back(::open(path, flags | O_CLOEXEC));
  m_duplicates.emplace_back(m_copies.back().get(), target);
}

void SpawnSettings::duplicate(int descriptor, int target) {
  m_copies.emplace_back(::fcntl(descriptor, F_DUPFD_CLOEXEC, 0));
  m_duplicates.emplace_back(m_copies.back().get(), target);
}

pid_t SpawnSettings::spawn(const std::string& executable, std::vector<std::string> arguments,
                           std::vector<std::string> /*environment*/, Start /*start*/,
                           bool /*yields*/) {
  std::map<int, FileDescriptor> descriptors;
  for (std::size_t index = 0; index < m_copies.size(); ++index) {
    descriptors[m_duplicates[index].second] = std::move(m_copies[index]);
  }
  return VirtualProcesses::current().spawn(executable, arguments, std::move(descriptors));
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
