#include "platform/linux/process/NotificationSound.h"

#include "platform/linux/process/SpawnedChild.h"

#include <cstdint>
#include <utility>

#include <sys/eventfd.h>

namespace tidewell {

namespace {

// Longer than any such sound; the helper itself gives up earlier.
constexpr Seconds limit = 8.0;

} // namespace

NotificationSound::NotificationSound(WorkQueue& background, std::string helper)
    : m_background(background), m_helper(std::move(helper)),
      m_ending(std::make_shared<const FileDescriptor>(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))) {}

void NotificationSound::play() {
  m_background.post([helper = m_helper, ending = m_ending] {
    if (auto child = SpawnedChild::start(helper, {})) {
      child->wait(limit, *ending);
      child->reap();
    }
  });
}

void NotificationSound::endAll() {
  const std::uint64_t one = 1;
  [[maybe_unused]] const auto size = ::write(m_ending->get(), &one, sizeof one);
}

} // namespace tidewell
