#pragma once

#include "base/Scheduler.h"
#include "platform/linux/loop/FileDescriptor.h"

#include <cstdint>
#include <optional>
#include <vector>

#include <curl/curl.h>

namespace tidewell {

class Transfer;
class TransferLoop;

/// Transfers that share connections, and nothing with those of other pools.
class TransferPool {
public:
  /// With at most `mostConnections` at a time; 0 for any number. The loop outlives the pool.
  TransferPool(TransferLoop& loop, long mostConnections);
  TransferPool(const TransferPool&) = delete;
  TransferPool& operator=(const TransferPool&) = delete;
  ~TransferPool();

  void add(Transfer& transfer);
  /// Ends a transfer that has not finished; does nothing to one that has.
  void remove(Transfer& transfer);

private:
  friend TransferLoop;

  static int onSocket(CURL* transfer, curl_socket_t socket, int what, void* self, void* known);
  static int onTimer(CURLM* multi, long milliseconds, void* self);
  void handle(curl_socket_t socket, int events);
  void finish();

  TransferLoop& m_loop;
  CURLM* m_multi;
  std::optional<Seconds> m_alarm;
};

/// Moves every pool's transfers forward on one thread.
class TransferLoop {
public:
  /// A readable `stop` ends all waiting for good.
  explicit TransferLoop(const FileDescriptor& stop);

  /// Seconds on a clock that moves only forward.
  [[nodiscard]] static Seconds now();

  /// Does what can be done now, waits until `deadline` at the latest if that is nothing, and calls
  /// `Transfer::onFinished` of what has finished.
  void serve(Seconds deadline);

  /// Whether somebody wants the program to end.
  [[nodiscard]] bool isStopped() const { return m_isStopped; }

  /// Tells that a transfer has taken bytes to send.
  void noteSending() { m_isSending = true; }

private:
  friend TransferPool;

  struct Watch {
    curl_socket_t socket;
    TransferPool* pool;
  };

  void watch(TransferPool& pool, curl_socket_t socket, int what);
  [[nodiscard]] int waitingTime(Seconds deadline) const;
  void dispatch(int socket, std::uint32_t events);
  void fireAlarms();

  FileDescriptor m_epoll;
  std::vector<TransferPool*> m_pools;
  std::vector<Watch> m_watches; // a handful
  bool m_isSending = false;
  bool m_isStopped = false;
};

} // namespace tidewell
