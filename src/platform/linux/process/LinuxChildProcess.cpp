#include "platform/linux/process/LinuxChildProcess.h"

#include "base/IfMemoryAllows.h"
#include "platform/linux/process/SpawnedChild.h"
#include "platform/linux/process/SystemTools.h"

#include <cstdint>

#include <poll.h>
#include <sys/eventfd.h>

namespace tidewell {

namespace {

bool isReadable(const FileDescriptor& descriptor) {
  pollfd query{descriptor.get(), POLLIN, 0};
  return ::poll(&query, 1, 0) > 0;
}

} // namespace

LinuxChildProcess::LinuxChildProcess() : m_ending(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

std::optional<std::string> LinuxChildProcess::run(const std::string& path,
                                                  const std::vector<std::string>& arguments,
                                                  const std::function<void(Id child)>& launched) {
  std::optional<ToolCall> call;
  if (!ifMemoryAllows([&] { call = systemTool(path, arguments); }) || !call ||
      isReadable(m_ending)) {
    return std::nullopt;
  }
  auto child = SpawnedChild::start(call->executable, call->arguments);
  if (!child) {
    return std::nullopt;
  }
  const Id id = child->id();
  // Without memory for them nobody terminates the child before its limit does.
  [[maybe_unused]] const bool isTold = ifMemoryAllows([&] {
    list(id, *child);
    if (launched) {
      launched(id);
    }
  });
  child->wait(call->limit, m_ending);
  {
    // Until here the child is not reaped, so its identifier cannot have passed to another process.
    const std::scoped_lock lock(m_mutex);
    m_running.erase(id);
  }
  child->reap();
  return child->output();
}

void LinuxChildProcess::list(Id id, SpawnedChild& child) {
  const std::scoped_lock lock(m_mutex);
  m_running.emplace(id, &child);
}

void LinuxChildProcess::terminate(Id child) {
  const std::scoped_lock lock(m_mutex);
  if (const auto found = m_running.find(child); found != m_running.end()) {
    found->second->terminate();
  }
}

void LinuxChildProcess::endAll() {
  const std::uint64_t one = 1;
  [[maybe_unused]] const auto size = ::write(m_ending.get(), &one, sizeof one);
}

} // namespace tidewell
