#include "platform/linux/process/SpawnSettings.h"

#include <algorithm>
#include <csignal>

#include <fcntl.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tidewell {
namespace {

// Background work yields to what the user looks at.
constexpr int utilityNice = 5; // more than this process

// The child only makes a few system calls on it.
constexpr std::size_t stackSize = 32768;

// Copies stay clear of the descriptors that the child overwrites.
constexpr int firstFree = STDERR_FILENO + 1;

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string& text : texts) {
    pointers.push_back(text.data());
  }
  pointers.push_back(nullptr);
  return pointers;
}

std::vector<int> changedSignals() {
  std::vector<int> changed;
  for (int signal = 1; signal <= SIGRTMAX; ++signal) {
    struct sigaction action {};
    if (::sigaction(signal, nullptr, &action) == 0 && action.sa_handler != SIG_DFL) {
      changed.push_back(signal);
    }
  }
  return changed;
}

} // namespace

void SpawnSettings::open(int target, const char* path, int flags) {
  const FileDescriptor file(::open(path, flags | O_CLOEXEC));
  duplicate(file.get(), target);
}

void SpawnSettings::duplicate(int descriptor, int target) {
  FileDescriptor copy(::fcntl(descriptor, F_DUPFD_CLOEXEC, firstFree));
  m_duplicates.emplace_back(copy.get(), target);
  m_copies.push_back(std::move(copy));
}

pid_t SpawnSettings::spawn(const std::string& executable, std::vector<std::string> arguments,
                           std::vector<std::string> environment, Start start, bool yields) {
  if (!std::ranges::all_of(m_copies, &FileDescriptor::isOpen) ||
      ::access(executable.c_str(), X_OK) != 0) {
    return -1;
  }
  arguments.insert(arguments.begin(), executable);
  m_arguments = std::move(arguments);
  m_environment = std::move(environment);
  m_argumentPointers = pointersTo(m_arguments);
  m_environmentPointers = pointersTo(m_environment);
  m_signals = changedSignals();
  m_stack = std::make_unique_for_overwrite<std::byte[]>(stackSize);
  // The child shares this process's memory instead of copying its page tables. It must not run this
  // process's signal handlers.
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  ::pthread_sigmask(SIG_SETMASK, &all, &before);
  const int flags = CLONE_VM | SIGCHLD | (start == Start::awaited ? CLONE_VFORK : 0);
  const pid_t pid = ::clone(&SpawnSettings::runChild, m_stack.get() + stackSize, flags, this);
  ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
  m_copies.clear();
  if (pid > 0 && start == Start::awaited && m_hasFailed) {
    ::waitpid(pid, nullptr, 0);
    return -1;
  }
  if (pid > 0 && yields) {
    const int own = ::getpriority(PRIO_PROCESS, 0);
    ::setpriority(PRIO_PROCESS, static_cast<id_t>(pid), own + utilityNice);
  }
  return pid;
}

// Runs in the child, in this process's memory. The calls before the last one do not fail, so they
// leave the parent's errno alone.
[[gnu::no_sanitize_address]] int SpawnSettings::runChild(void* settings) {
  auto& own = *static_cast<SpawnSettings*>(settings);
  for (const auto& [copy, target] : own.m_duplicates) {
    ::dup2(copy, target);
  }
  for (const int signal : own.m_signals) {
    static_cast<void>(::signal(signal, SIG_DFL));
  }
  sigset_t none;
  sigemptyset(&none);
  ::sigprocmask(SIG_SETMASK, &none, nullptr);
  ::execve(own.m_argumentPointers.front(), own.m_argumentPointers.data(),
           own.m_environmentPointers.data());
  own.m_hasFailed = true;
  ::_exit(127);
}

int openProcess(pid_t pid) { return static_cast<int>(::syscall(SYS_pidfd_open, pid, 0)); }

} // namespace tidewell
