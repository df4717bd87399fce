#include "platform/linux/LinuxChildProcess.h"

#include "platform/linux/SpawnedChild.h"
#include "platform/linux/SystemTools.h"

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
                                                  const std::vector<std::string>& arguments) {
  const auto call = systemTool(path, arguments);
  if (!call || isReadable(m_ending)) {
    return std::nullopt;
  }
  auto child = SpawnedChild::start(call->executable, call->arguments);
  if (!child) {
    return std::nullopt;
  }
  child->wait(call->limit, m_ending);
  return child->output();
}

void LinuxChildProcess::endAll() {
  const std::uint64_t one = 1;
  [[maybe_unused]] const auto size = ::write(m_ending.get(), &one, sizeof one);
}

} // namespace tidewell
