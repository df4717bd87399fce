#pragma once

#include <cstdint>
#include <deque>
#include <memory>

namespace tidewell {

/// One sample of throughput and latency. Immutable, shared by reference, and equal only to itself.
class NetworkSnapshot {
public:
  /// Unique among the existing records.
  using Id = const NetworkSnapshot*;

  /// `timestamp` in seconds since 1970-01-01 UTC, rates in bytes per second over the interval that
  /// ends there, latency and jitter in milliseconds, loss in percent from 0 to 100.
  NetworkSnapshot(double timestamp, std::int64_t downloadBytesPerSec,
                  std::int64_t uploadBytesPerSec, double latencyMs, double jitterMs,
                  double packetLossPercent)
      : m_timestamp(timestamp), m_downloadBytesPerSec(downloadBytesPerSec),
        m_uploadBytesPerSec(uploadBytesPerSec), m_latencyMs(latencyMs), m_jitterMs(jitterMs),
        m_packetLossPercent(packetLossPercent) {}
  NetworkSnapshot(NetworkSnapshot&&) = delete;

  [[nodiscard]] Id id() const { return this; }
  [[nodiscard]] double timestamp() const { return m_timestamp; }
  [[nodiscard]] std::int64_t downloadBytesPerSec() const { return m_downloadBytesPerSec; }
  [[nodiscard]] std::int64_t uploadBytesPerSec() const { return m_uploadBytesPerSec; }
  [[nodiscard]] double latencyMs() const { return m_latencyMs; }
  [[nodiscard]] double jitterMs() const { return m_jitterMs; }
  [[nodiscard]] double packetLossPercent() const { return m_packetLossPercent; }

  friend bool operator==(const NetworkSnapshot& left, const NetworkSnapshot& right) {
    return left.id() == right.id();
  }

private:
  double m_timestamp;
  std::int64_t m_downloadBytesPerSec;
  std::int64_t m_uploadBytesPerSec;
  double m_latencyMs;
  double m_jitterMs;
  double m_packetLossPercent;
};

/// Samples, oldest first.
using SnapshotList = std::deque<std::shared_ptr<const NetworkSnapshot>>;

} // namespace tidewell
