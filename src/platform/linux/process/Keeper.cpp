#include "platform/linux/process/Keeper.h"

#include "base/NumberText.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <string>
#include <thread>

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tidewell {
namespace {

// A program that ran this long did not crash because of how it was started.
constexpr Seconds steady = 60;

/// The exit status of `child`, as from waitpid(2).
int endOf(pid_t child) {
  int status = 0;
  while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return status;
}

/// Exited normally or was asked to end.
bool endedWell(int status) {
  if (WIFEXITED(status)) {
    return WEXITSTATUS(status) == EXIT_SUCCESS;
  }
  const int signal = WTERMSIG(status);
  return signal == SIGTERM || signal == SIGINT || signal == SIGHUP;
}

void report(int status, Seconds delay) {
  std::string line = "tidewell: ended by ";
  if (WIFEXITED(status)) {
    line += "exit status " + std::to_string(WEXITSTATUS(status));
  } else {
    line += "signal " + std::to_string(WTERMSIG(status));
  }
  line += ", starts again in " + fixedText(delay, 0) + " s\n";
  [[maybe_unused]] const auto written = ::write(STDERR_FILENO, line.data(), line.size());
}

/// Called in the child, so that it ends with its parent.
void followInDeath(pid_t parent) {
  ::prctl(PR_SET_PDEATHSIG, SIGTERM);
  if (::getppid() != parent) {
    ::_exit(EXIT_SUCCESS);
  }
}

} // namespace

Seconds RestartDelay::next(Seconds lived) {
  m_delay = lived < steady ? std::clamp(m_delay * 2, m_shortest, m_longest) : m_shortest;
  return m_delay;
}

std::optional<int> keepRunning(RestartDelay delay) {
  using SteadyClock = std::chrono::steady_clock;
  const pid_t self = ::getpid();
  while (true) {
    const auto began = SteadyClock::now();
    const pid_t child = ::fork();
    if (child <= 0) {
      if (child == 0) {
        followInDeath(self);
      }
      return std::nullopt; // without a child, this process does the work
    }
    const int status = endOf(child);
    if (endedWell(status)) {
      return EXIT_SUCCESS;
    }
    const std::chrono::duration<Seconds> pause(
        delay.next(std::chrono::duration<Seconds>(SteadyClock::now() - began).count()));
    report(status, pause.count());
    std::this_thread::sleep_for(pause);
  }
}

} // namespace tidewell
