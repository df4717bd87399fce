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
/// latency probe with every fifth of them.
///
/// Owned by a shared_ptr. The measuring runs on a serial queue of its own, which waits for the
/// probe.
class BandwidthSampler : public SamplerState,
                         public std::enable_shared_from_this<BandwidthSampler> {
public:
  /// How many samples are kept.
  static constexpr std::size_t maxSnapshots = 300;

  /// Does not start measuring. Borrows the platform.
  explicit BandwidthSampler(const Platform& platform);

  /// Takes a new baseline and then a sample every `interval` seconds. Call `stop` first when it
  /// runs. History, probe cadence and published values go on where they stopped.
  void start(Seconds interval);

  /// Ends sampling; a sample under way still publishes. Does nothing when stopped.
  void stop();

  /// Name of the interface that carries the traffic, asked anew at every call; "en0" when the
  /// system does not know.
  [[nodiscard]] static std::string detectPrimaryInterface(ConfigurationStore& configuration);

  /// The interface's byte counters; zeros when it cannot be read.
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
  std::int64_t m_sampleCount = 0;   // samples that gave rates since construction

  std::unique_ptr<WorkQueue> m_workQueue; // last but the timer: its tasks use all that is above
  std::unique_ptr<Timer> m_timer;
};

} // namespace tidewell
