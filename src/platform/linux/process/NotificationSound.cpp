#include "platform/linux/process/NotificationSound.h"

#include "platform/linux/process/SpawnedChild.h"

#include <utility>

namespace tidewell {
namespace {

// Longer than any such sound; the helper itself gives up earlier.
constexpr Seconds playLimit = 8.0;

Async<> playOnce(EventLoop& loop, std::string helper) {
  if (const auto child = SpawnedChild::start(loop, helper, {}, playLimit)) {
    co_await child->exit();
  }
}

} // namespace

NotificationSound::NotificationSound(EventLoop& loop, WorkQueue& background, std::string helper)
    : m_loop(loop), m_background(background), m_helper(std::move(helper)) {}

void NotificationSound::play() {
  m_background.post([&loop = m_loop, helper = m_helper] { return playOnce(loop, helper); });
}

} // namespace tidewell
