#include "platform/linux/process/LinuxHttpClient.h"

#include "base/IfMemoryAllows.h"
#include "platform/linux/process/SpawnedChild.h"

#include <cstdint>
#include <utility>

#include <poll.h>
#include <sys/eventfd.h>

namespace tidewell {

namespace {

bool isReadable(const FileDescriptor& descriptor) {
  pollfd query{descriptor.get(), POLLIN, 0};
  return ::poll(&query, 1, 0) > 0;
}

} // namespace

LinuxHttpClient::LinuxHttpClient(std::string helper)
    : m_helper(std::move(helper)), m_stop(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

std::optional<std::string> LinuxHttpClient::get(const std::string& url, Seconds wait) {
  if (isReadable(m_stop)) {
    return std::nullopt;
  }
  std::optional<SpawnedChild> child;
  if (!ifMemoryAllows([&] { child = SpawnedChild::start(m_helper, {url}); }) || !child) {
    return std::nullopt;
  }
  child->wait(wait, m_stop);
  const auto status = child->reap();
  return status == 0 ? child->output() : std::nullopt;
}

void LinuxHttpClient::setPathSatisfied(bool isSatisfied) {
  const std::scoped_lock lock(m_mutex);
  m_isSatisfied = isSatisfied;
  update();
}

void LinuxHttpClient::endAll() {
  const std::scoped_lock lock(m_mutex);
  m_isEnding = true;
  update();
}

void LinuxHttpClient::update() {
  std::uint64_t count = 1;
  if (!m_isSatisfied || m_isEnding) {
    [[maybe_unused]] const auto written = ::write(m_stop.get(), &count, sizeof count);
  } else {
    [[maybe_unused]] const auto read = ::read(m_stop.get(), &count, sizeof count);
  }
}

} // namespace tidewell
