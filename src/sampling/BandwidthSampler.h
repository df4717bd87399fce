#pragma once

#include "base/Scheduler.h"
#include "platform/InterfaceCounters.h"
#include "sampling/LatencyProbe.h"
#include "sampling/SamplerState.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace tidewell {

class Clock;
class ConfigurationStore;
struct Platform;

/// Turns the primary interface's byte counters into rates, one sample per interval, and runs the
/// latency probe with every fifth.
///
/// Owned by a shared_ptr. Measures on a serial queue of its own, which waits for the probe.
class BandwidthSampler : public SamplerState,
                         public std::enable_shared_from_this<BandwidthSampler> {
public:
  /// The number of samples kept.
  static constexpr std::size_t maxSnapshots = 300;

  /// Does not start measuring. Borrows the platform.
  explicit BandwidthSampler(const Platform& platform);

  /// Takes a new baseline, then a sample every `interval` seconds. Call `stop` first if it runs.
  /// History, probe cadence and published values continue.
  void start(Seconds interval);

  /// Ends sampling; a sample under way is still published. Does nothing if stopped.
  void stop();

  /// Name of the interface that carries the traffic, queried at every call; "en0" if it is not
  /// known.
  [[nodiscard]] static std::string detectPrimaryInterface(ConfigurationStore& configuration);

  /// The interface's byte counters; zeros if it cannot be read.
  [[nodiscard]] static ByteCounts readInterfaceBytes(InterfaceCounters& counters,
                                                     const std::string& interface);

private:
  void prime();
  [[nodiscard]] Async<> sample();
  [[nodiscard]] ByteCounts readPrimaryInterface();
  void publish(const std::shared_ptr<const NetworkSnapshot>& snapshot);

  WorkQueue& m_main;
  Clock& m_clock;
  InterfaceCounters& m_counters;
  ConfigurationStore& m_configuration;

  LatencyProbe m_probe;
  ByteCounts m_previous;
  double m_previousTimestamp = 0.0; // seconds since 1970; 0 while there is no baseline
  std::int64_t m_sampleCount = 0;   // samples with rates since construction

  std::unique_ptr<WorkQueue> m_workQueue; // its tasks use all members above
  std::unique_ptr<Timer> m_timer;
};

} // namespace tidewell
