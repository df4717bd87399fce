#include "VirtualLoop.h"

#include "VirtualProcesses.h"

#include <algorithm>
#include <array>
#include <span>
#include <stdexcept>
#include <utility>

#include <sys/epoll.h>

namespace tidewell::test {

namespace {

// Turns at one moment; a flood of messages needs thousands.
constexpr int endless = 200'000;

} // namespace

class VirtualLoop::Watch final : public FdWatch {
public:
  Watch(VirtualLoop& loop, int descriptor, std::uint64_t key)
      : m_loop(loop), m_descriptor(descriptor), m_key(key) {}
  ~Watch() override {
    m_loop.m_handlers.erase(m_key);
    ::epoll_ctl(m_loop.m_epoll.get(), EPOLL_CTL_DEL, m_descriptor, nullptr);
  }
  void setEvents(std::uint32_t events) override {
    epoll_event event{events, {.u64 = m_key}};
    ::epoll_ctl(m_loop.m_epoll.get(), EPOLL_CTL_MOD, m_descriptor, &event);
  }

private:
  VirtualLoop& m_loop;
  int m_descriptor;
  std::uint64_t m_key;
};

VirtualLoop::VirtualLoop(VirtualScheduler& scheduler, WorkQueue& queue)
    : m_scheduler(scheduler), m_queue(queue), m_epoll(::epoll_create1(EPOLL_CLOEXEC)) {
  if (!m_epoll.isOpen()) {
    throw std::runtime_error("the kernel gives no event loop");
  }
  scheduler.whenIdle(queue, [this] { return turn(); });
}

std::unique_ptr<FdWatch> VirtualLoop::watch(int descriptor, std::uint32_t events,
                                            FdHandler handler) {
  epoll_event event{events, {.u64 = m_nextHandler}};
  if (::epoll_ctl(m_epoll.get(), EPOLL_CTL_ADD, descriptor, &event) != 0) {
    return nullptr;
  }
  if (VirtualProcesses::isProcess(descriptor)) {
    // The tools' output may need more memory than there is.
    handler = [this, handler = std::move(handler)](std::uint32_t ready) {
      m_scheduler.runApart([&] { handler(ready); });
    };
  }
  m_handlers.emplace(m_nextHandler, std::make_shared<FdHandler>(std::move(handler)));
  return std::make_unique<Watch>(*this, descriptor, m_nextHandler++);
}

bool VirtualLoop::turn() {
  if (std::exchange(m_lastTurn, m_scheduler.now()) != m_scheduler.now()) {
    m_turns = 0;
  }
  m_mostTurns = std::max(m_mostTurns, ++m_turns);
  if (m_turns > endless) {
    throw std::runtime_error("the event loop turns without end");
  }
  m_beforeSleep.notify();
  std::array<epoll_event, 16> events{};
  const int count = ::epoll_wait(m_epoll.get(), events.data(), static_cast<int>(events.size()), 0);
  for (const epoll_event& event : std::span(events).first(std::max(count, 0))) {
    const std::uint64_t key = event.data.u64;
    if (const auto found = m_handlers.find(key); found != m_handlers.end()) {
      const std::shared_ptr<FdHandler> handler = found->second;
      (*handler)(event.events);
    }
  }
  return count > 0;
}

} // namespace tidewell::test
