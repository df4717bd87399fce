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

/// Transfers that share connections with each other, but not with those of other pools.
class TransferPool {
public:
  /// Opens at most `mostConnections` at a time; 0 for any number. The loop outlives the pool.
  TransferPool(TransferLoop& loop, long mostConnections);
  TransferPool(TransferPool&&) = delete;
  ~TransferPool();

  void add(Transfer& transfer);
  /// Ends a transfer that has not finished.
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

/// Serves the transfers of all pools on one thread.
class TransferLoop {
public:
  /// Stops once `stop` is readable.
  explicit TransferLoop(const FileDescriptor& stop);

  /// The time on a monotonic clock.
  [[nodiscard]] static Seconds now();

  /// Waits until `deadline` at the latest for something to do, does it, and calls
  /// `Transfer::onFinished` of the finished transfers.
  void serve(Seconds deadline);

  /// Makes one transfer that has a limit, and waits until it is over or the loop is stopped.
  void perform(Transfer& transfer);

  /// Whether somebody wants the program to end.
  [[nodiscard]] bool isStopped() const { return m_isStopped; }

  /// To be called when a transfer has taken bytes to send.
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
  std::vector<Watch> m_watches; // few
  bool m_isSending = false;
  bool m_isStopped = false;
};

} // namespace tidewell
