#include "platform/linux/process/SpawnedChild.h"

#include "base/IfMemoryAllows.h"
#include "platform/linux/loop/EventLoop.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <utility>

#include <fcntl.h>
#include <sys/epoll.h>
#include <sys/wait.h>

namespace tidewell {
namespace {

// A terminated child is killed after this time.
constexpr Seconds grace = 0.3;

// The polling interval where the kernel cannot signal a child's exit.
constexpr Seconds lookInterval = 0.05;

// Far above what a pipe holds once its writer has exited. Limits a descendant that keeps writing.
constexpr std::size_t mostOutput = 1U << 20U;

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

/// This process's environment with the C locale.
std::vector<std::string> untranslatedEnvironment() {
  std::vector<std::string> variables = ownEnvironment();
  std::erase_if(variables, [](const std::string& variable) {
    return variable.starts_with("LC_ALL=") || variable.starts_with("LANGUAGE=");
  });
  variables.emplace_back("LC_ALL=C");
  return variables;
}

/// Reaps a child. False while it runs, unless `options` lets waitpid wait.
bool reap(pid_t pid, int options, int& status) {
  pid_t reaped = 0;
  do {
    reaped = ::waitpid(pid, &status, options);
  } while (reaped < 0 && errno == EINTR);
  return reaped != 0;
}

} // namespace

std::unique_ptr<SpawnedChild> SpawnedChild::start(EventLoop& loop, const std::string& executable,
                                                  const std::vector<std::string>& arguments,
                                                  Seconds limit, ChildPriority priority) {
  auto output = makePipe();
  auto errors = makePipe();
  if (!output || !errors) {
    return nullptr;
  }
  std::unique_ptr<SpawnedChild> child;
  const bool hasMemory = ifMemoryAllows([&] {
    child.reset(new SpawnedChild(loop, std::move(output->readEnd), std::move(errors->readEnd)));
    SpawnSettings& settings = child->m_settings;
    settings.open(STDIN_FILENO, "/dev/null", O_RDONLY);
    settings.duplicate(output->writeEnd.get(), STDOUT_FILENO);
    settings.duplicate(errors->writeEnd.get(), STDERR_FILENO);
    child->m_pid =
        settings.spawn(executable, arguments, untranslatedEnvironment(),
                       SpawnSettings::Start::concurrent, priority == ChildPriority::utility);
    child->watch(limit);
  });
  return hasMemory && child->m_pid > 0 ? std::move(child) : nullptr;
}

SpawnedChild::SpawnedChild(EventLoop& loop, FileDescriptor output, FileDescriptor errors)
    : m_loop(loop), m_output(std::move(output)), m_errors(std::move(errors)) {}

SpawnedChild::~SpawnedChild() {
  if (isRunning()) {
    ::kill(m_pid, SIGKILL);
    int status = 0;
    reap(m_pid, 0, status);
  }
}

void SpawnedChild::watch(Seconds limit) {
  if (!isRunning()) {
    return;
  }
  m_process = FileDescriptor(openProcess(m_pid));
  if (m_process.isOpen()) {
    m_watch = m_loop.watch(m_process.get(), EPOLLIN, [this](std::uint32_t) { look(); });
  }
  if (!m_watch) { // an old kernel, or no descriptors left
    m_looks = m_loop.repeat(lookInterval, lookInterval, [this] { look(); });
  }
  m_limit = m_loop.repeat(limit, 0.0, [this] { stop(); });
}

void SpawnedChild::look() {
  int status = 0;
  if (!reap(m_pid, WNOHANG, status)) {
    return;
  }
  m_hasExited = true;
  if (WIFEXITED(status)) {
    m_status = WEXITSTATUS(status);
  }
  m_watch.reset();
  m_looks.reset();
  m_limit.reset();
  m_waiter.resume();
}

void SpawnedChild::terminate() const {
  if (isRunning()) {
    ::kill(m_pid, SIGTERM);
  }
}

void SpawnedChild::stop() {
  if (isRunning()) {
    terminate();
    m_limit = m_loop.repeat(grace, 0.0, [this] { ::kill(m_pid, SIGKILL); });
  }
}

std::optional<std::string> SpawnedChild::output() const {
  if (m_settings.hasFailed()) {
    return std::nullopt;
  }
  std::string text;
  return ifMemoryAllows([&] { readOutput(text); }) ? std::optional(std::move(text)) : std::nullopt;
}

void SpawnedChild::readOutput(std::string& text) const {
  // All that the child wrote is in the pipe by now; end of file need not be awaited.
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
