#include "platform/linux/network/DnsChanges.h"

#include "platform/linux/network/DnsServers.h"

#include <utility>

namespace tidewell {
namespace {

constexpr Seconds writingTime = 0.2;
constexpr Seconds untilNextAttempt = 60.0;

} // namespace

DnsChanges::DnsChanges(EventLoop& loop, const DnsPlaces& places, std::function<void()> observer)
    : m_loop(loop), m_observer(std::move(observer)),
      m_files(
          filesOf(places),
          [&loop](int descriptor, std::uint32_t events, EventLoop::FdHandler handler) {
            return loop.watch(descriptor, events, std::move(handler));
          },
          [this](bool) { beginToWait(); }) {
  arm();
}

void DnsChanges::arm() {
  const bool isWatched = m_files.arm();
  m_timer = isWatched ? nullptr : m_loop.repeat(untilNextAttempt, 0.0, [this] { changed(); });
}

void DnsChanges::beginToWait() {
  if (!m_isWaiting) {
    m_isWaiting = true;
    m_timer = m_loop.repeat(writingTime, 0.0, [this] { changed(); });
  }
}

void DnsChanges::changed() {
  m_isWaiting = false;
  arm(); // before the observer reads the files
  m_observer();
}

} // namespace tidewell
