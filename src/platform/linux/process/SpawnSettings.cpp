#include "platform/linux/process/SpawnSettings.h"

#include <csignal>

#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace tidewell {

namespace {

// Background work yields to what the user looks at.
constexpr int utilityNice = 5; // more than this process

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string& text : texts) {
    pointers.push_back(text.data());
  }
  pointers.push_back(nullptr);
  return pointers;
}

} // namespace

SpawnSettings::SpawnSettings() {
  posix_spawn_file_actions_init(&m_actions);
  posix_spawnattr_init(&m_attributes);
  sigset_t signals;
  sigemptyset(&signals);
  posix_spawnattr_setsigmask(&m_attributes, &signals);
  sigfillset(&signals);
  posix_spawnattr_setsigdefault(&m_attributes, &signals);
  posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
}

SpawnSettings::~SpawnSettings() {
  posix_spawn_file_actions_destroy(&m_actions);
  posix_spawnattr_destroy(&m_attributes);
}

void SpawnSettings::open(int target, const char* path, int flags) {
  posix_spawn_file_actions_addopen(&m_actions, target, path, flags, 0);
}

void SpawnSettings::duplicate(int descriptor, int target) {
  posix_spawn_file_actions_adddup2(&m_actions, descriptor, target);
}

pid_t SpawnSettings::spawn(const std::string& executable, std::vector<std::string> arguments,
                           std::vector<std::string> environment, bool yields) const {
  arguments.insert(arguments.begin(), executable);
  pid_t pid = 0;
  const int failure = ::posix_spawn(&pid, executable.c_str(), &m_actions, &m_attributes,
                                    pointersTo(arguments).data(), pointersTo(environment).data());
  if (failure != 0) {
    return -1;
  }
  if (yields) {
    const int own = ::getpriority(PRIO_PROCESS, 0);
    ::setpriority(PRIO_PROCESS, static_cast<id_t>(pid), own + utilityNice);
  }
  return pid;
}

int openProcess(pid_t pid) { return static_cast<int>(::syscall(SYS_pidfd_open, pid, 0)); }

} // namespace tidewell
