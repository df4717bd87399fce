#include "helpers/networkQuality/Transfer.h"
#include "helpers/networkQuality/TransferLoop.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace tidewell {

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

} // namespace tidewell
