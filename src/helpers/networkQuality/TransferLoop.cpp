#include "helpers/networkQuality/TransferLoop.h"

#include "helpers/networkQuality/Transfer.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <span>
#include <thread>

#include <sys/epoll.h>

namespace tidewell {

namespace {

// libcurl leaves a socket writable that has nothing to write while the other end's window is full.
constexpr auto pauseOfFutileWriting = std::chrono::microseconds(500);

} // namespace

TransferLoop::TransferLoop(const FileDescriptor& stop) : m_epoll(::epoll_create1(EPOLL_CLOEXEC)) {
  epoll_event event{};
  event.events = EPOLLIN;
  event.data.fd = -1;
  ::epoll_ctl(m_epoll.get(), EPOLL_CTL_ADD, stop.get(), &event);
}

Seconds TransferLoop::now() {
  return Seconds(
      std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count());
}

void TransferLoop::serve(Seconds deadline) {
  std::array<epoll_event, 32> buffer{};
  const int count = ::epoll_wait(m_epoll.get(), buffer.data(), static_cast<int>(buffer.size()),
                                 waitingTime(deadline));
  const std::span events(buffer.data(), static_cast<std::size_t>(std::max(count, 0)));
  m_isSending = false;
  for (const epoll_event& event : events) {
    dispatch(event.data.fd, event.events);
  }
  fireAlarms();
  const auto pools = m_pools; // whoever hears of an end may make and drop pools
  for (TransferPool* pool : pools) {
    if (std::find(m_pools.begin(), m_pools.end(), pool) != m_pools.end()) {
      pool->finish();
    }
  }
  const bool isFutile = !events.empty() && !m_isSending &&
                        std::all_of(events.begin(), events.end(), [](const epoll_event& event) {
                          return event.events == EPOLLOUT;
                        });
  if (isFutile) {
    std::this_thread::sleep_for(pauseOfFutileWriting);
  }
}

void TransferLoop::dispatch(int socket, std::uint32_t events) {
  if (socket < 0) {
    m_isStopped = true;
    return;
  }
  const auto found = std::find_if(m_watches.begin(), m_watches.end(),
                                  [socket](const Watch& watch) { return watch.socket == socket; });
  if (found != m_watches.end()) {
    found->pool->handle(socket, ((events & EPOLLIN) != 0 ? CURL_CSELECT_IN : 0) |
                                    ((events & EPOLLOUT) != 0 ? CURL_CSELECT_OUT : 0) |
                                    ((events & (EPOLLERR | EPOLLHUP)) != 0 ? CURL_CSELECT_ERR : 0));
  }
}

void TransferLoop::watch(TransferPool& pool, curl_socket_t socket, int what) {
  const auto found = std::find_if(m_watches.begin(), m_watches.end(),
                                  [socket](const Watch& watch) { return watch.socket == socket; });
  if (what == CURL_POLL_REMOVE) {
    if (found != m_watches.end()) {
      m_watches.erase(found);
      ::epoll_ctl(m_epoll.get(), EPOLL_CTL_DEL, socket, nullptr);
    }
    return;
  }
  epoll_event event{};
  event.events =
      ((what & CURL_POLL_IN) != 0 ? EPOLLIN : 0U) | ((what & CURL_POLL_OUT) != 0 ? EPOLLOUT : 0U);
  event.data.fd = socket;
  const bool isNew = found == m_watches.end();
  if (isNew) {
    m_watches.push_back({socket, &pool});
  }
  ::epoll_ctl(m_epoll.get(), isNew ? EPOLL_CTL_ADD : EPOLL_CTL_MOD, socket, &event);
}

int TransferLoop::waitingTime(Seconds deadline) const {
  for (const TransferPool* pool : m_pools) {
    deadline = std::min(deadline, pool->m_alarm.value_or(deadline));
  }
  return static_cast<int>(std::ceil(std::clamp((deadline - now()) * 1e3, 0.0, 1000.0)));
}

void TransferLoop::fireAlarms() {
  const Seconds time = now();
  for (TransferPool* pool : m_pools) {
    if (pool->m_alarm && *pool->m_alarm <= time) {
      pool->m_alarm.reset();
      pool->handle(CURL_SOCKET_TIMEOUT, 0);
    }
  }
}

} // namespace tidewell
