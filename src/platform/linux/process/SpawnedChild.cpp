#include "platform/linux/process/SpawnedChild.h"

#include "base/IfMemoryAllows.h"
#include "platform/linux/process/SpawnSettings.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>

namespace tidewell {

namespace {

// A child that was told to terminate has this long until it is killed.
constexpr int graceMilliseconds = 300;

// Far above what a pipe holds when its only writer has exited: a bound for a descendant that goes
// on writing.
constexpr std::size_t mostOutput = 1U << 20U;

constexpr int longestWaitMilliseconds = 24 * 3600 * 1000;

struct Pipe {
  FileDescriptor readEnd;
  FileDescriptor writeEnd;
};

std::optional<Pipe> makePipe() {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
    return std::nullopt;
  }
  return Pipe{FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

/// This process's environment with every message in the C locale.
std::vector<std::string> untranslatedEnvironment() {
  std::vector<std::string> variables;
  for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
    const std::string_view variable(*entry);
    if (!variable.starts_with("LC_ALL=") && !variable.starts_with("LANGUAGE=")) {
      variables.emplace_back(variable);
    }
  }
  variables.emplace_back("LC_ALL=C");
  return variables;
}

} // namespace

std::optional<SpawnedChild> SpawnedChild::start(const std::string& executable,
                                                const std::vector<std::string>& arguments) {
  auto output = makePipe();
  auto errors = makePipe();
  if (!output || !errors) {
    return std::nullopt;
  }
  pid_t pid = -1;
  const bool hasMemory = ifMemoryAllows(
      [&] { pid = spawn(executable, arguments, output->writeEnd.get(), errors->writeEnd.get()); });
  if (!hasMemory || pid < 0) {
    return std::nullopt;
  }
  return SpawnedChild(pid, std::move(output->readEnd), std::move(errors->readEnd));
}

pid_t SpawnedChild::spawn(const std::string& executable, const std::vector<std::string>& arguments,
                          int output, int errors) {
  SpawnSettings settings;
  settings.open(STDIN_FILENO, "/dev/null", O_RDONLY);
  settings.duplicate(output, STDOUT_FILENO);
  settings.duplicate(errors, STDERR_FILENO);
  return settings.spawn(executable, arguments, untranslatedEnvironment());
}

SpawnedChild::SpawnedChild(pid_t pid, FileDescriptor output, FileDescriptor errors)
    : m_pid(pid), m_process(openProcess(pid)), m_output(std::move(output)),
      m_errors(std::move(errors)) {}

void SpawnedChild::terminate() const { ::kill(m_pid, SIGTERM); }

void SpawnedChild::wait(Seconds limit, const FileDescriptor& ending) const {
  const double milliseconds = std::clamp(limit * 1e3, 0.0, double{longestWaitMilliseconds});
  if (waitFor(static_cast<int>(milliseconds), ending.get())) {
    return;
  }
  terminate();
  if (!waitFor(graceMilliseconds, -1)) {
    ::kill(m_pid, SIGKILL);
    static_cast<void>(waitFor(longestWaitMilliseconds, -1));
  }
}

// Not const: the child is gone afterwards.
std::optional<int> SpawnedChild::reap() { // NOLINT(readability-make-member-function-const)
  int status = 0;
  pid_t reaped = 0;
  do {
    reaped = ::waitpid(m_pid, &status, 0);
  } while (reaped < 0 && errno == EINTR);
  return reaped == m_pid && WIFEXITED(status) ? std::optional(WEXITSTATUS(status)) : std::nullopt;
}

bool SpawnedChild::waitFor(int milliseconds, int ending) const {
  if (!m_process.isOpen()) {
    return true; // a kernel without process descriptors: only the plain wait is left
  }
  std::array<pollfd, 2> queries{pollfd{m_process.get(), POLLIN, 0}, pollfd{ending, POLLIN, 0}};
  const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
  while (true) {
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(until - std::chrono::steady_clock::now());
    const int ready = ::poll(queries.data(), queries.size(),
                             static_cast<int>(std::max<std::int64_t>(left.count(), 0)));
    if (ready >= 0 || errno != EINTR) {
      return queries[0].revents != 0;
    }
  }
}

std::optional<std::string> SpawnedChild::output() const {
  std::string text;
  return ifMemoryAllows([&] { readOutput(text); }) ? std::optional(std::move(text)) : std::nullopt;
}

void SpawnedChild::readOutput(std::string& text) const {
  // Whatever the child wrote is in the pipe by now; no end of file is needed to know that.
  ::fcntl(m_output.get(), F_SETFL, O_NONBLOCK);
  std::array<char, 4096> piece{};
  while (text.size() < mostOutput) {
    const auto size = ::read(m_output.get(), piece.data(), piece.size());
    if (size > 0) {
      text.append(piece.data(), static_cast<std::size_t>(size));
    } else if (size == 0 || errno != EINTR) {
      break;
    }
  }
}

} // namespace tidewell
