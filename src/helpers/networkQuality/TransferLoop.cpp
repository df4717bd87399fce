#include "helpers/networkQuality/TransferLoop.h"

#include "helpers/networkQuality/Transfer.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <span>
#include <thread>
#include <utility>
#include <vector>

#include <sys/epoll.h>

namespace tidewell {
namespace {

// libcurl waits for a writable socket even if it has nothing to write because the peer's window is
// full.
constexpr auto pauseOfFutileWriting = std::chrono::microseconds(500);

} // namespace

TransferPool::TransferPool(TransferLoop& loop, long mostConnections)
    : m_loop(loop), m_multi(curl_multi_init()) {
  curl_multi_setopt(m_multi, CURLMOPT_SOCKETFUNCTION, &onSocket);
  curl_multi_setopt(m_multi, CURLMOPT_SOCKETDATA, this);
  curl_multi_setopt(m_multi, CURLMOPT_TIMERFUNCTION, &onTimer);
  curl_multi_setopt(m_multi, CURLMOPT_TIMERDATA, this);
  curl_multi_setopt(m_multi, CURLMOPT_PIPELINING, CURLPIPE_MULTIPLEX);
  curl_multi_setopt(m_multi, CURLMOPT_MAX_TOTAL_CONNECTIONS, mostConnections);
  m_loop.m_pools.push_back(this);
}

TransferPool::~TransferPool() {
  std::erase(m_loop.m_pools, this);
  curl_multi_cleanup(m_multi);
  std::erase_if(m_loop.m_watches, [this](const auto& watch) { return watch.pool == this; });
}

void TransferPool::add(Transfer& transfer) {
  transfer.begin();
  curl_multi_add_handle(m_multi, transfer.handle());
}

void TransferPool::remove(Transfer& transfer) {
  curl_multi_remove_handle(m_multi, transfer.handle());
}

int TransferPool::onSocket(CURL* /*transfer*/, curl_socket_t socket, int what, void* self,
                           void* /*known*/) {
  auto& pool = *static_cast<TransferPool*>(self);
  pool.m_loop.watch(pool, socket, what);
  return 0;
}

int TransferPool::onTimer(CURLM* /*multi*/, long milliseconds, void* self) {
  auto& alarm = static_cast<TransferPool*>(self)->m_alarm;
  alarm.reset();
  if (milliseconds >= 0) {
    alarm = TransferLoop::now() + static_cast<double>(milliseconds) / 1e3;
  }
  return 0;
}

void TransferPool::handle(curl_socket_t socket, int events) {
  int running = 0;
  curl_multi_socket_action(m_multi, socket, events, &running);
}

void TransferPool::finish() {
  std::vector<std::pair<Transfer*, CURLcode>> finished;
  int left = 0;
  while (const CURLMsg* message = curl_multi_info_read(m_multi, &left)) {
    CURL* const handle = message->easy_handle;
    const CURLcode code = message->data.result;
    finished.emplace_back(&Transfer::of(handle), code);
    curl_multi_remove_handle(m_multi, handle);
  }
  for (const auto& [transfer, code] : finished) {
    transfer->finish(code);
  }
}

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
  const auto pools = m_pools; // a copy, because a finished transfer may make and destroy pools
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
  const auto found = std::ranges::find(m_watches, socket, &Watch::socket);
  if (found != m_watches.end()) {
    found->pool->handle(socket, ((events & EPOLLIN) != 0 ? CURL_CSELECT_IN : 0) |
                                    ((events & EPOLLOUT) != 0 ? CURL_CSELECT_OUT : 0) |
                                    ((events & (EPOLLERR | EPOLLHUP)) != 0 ? CURL_CSELECT_ERR : 0));
  }
}

void TransferLoop::watch(TransferPool& pool, curl_socket_t socket, int what) {
  const auto found = std::ranges::find(m_watches, socket, &Watch::socket);
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

void TransferLoop::perform(Transfer& transfer) {
  bool isOver = false;
  transfer.onFinished([&isOver] { isOver = true; });
  TransferPool pool(*this, 1);
  pool.add(transfer);
  while (!isOver && !m_isStopped) {
    serve(now() + 1.0);
  }
  if (!isOver) {
    pool.remove(transfer);
  }
}

} // namespace tidewell
