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
/// Made with `makeService`. `start`, `stop` and every published value belong to the main thread;
/// the measuring runs on a serial queue of its own and holds the sampler weakly between samples.
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
  /// system does not know. Any thread.
  [[nodiscard]] static std::string detectPrimaryInterface(ConfigurationStore& configuration);

  /// The interface's byte counters; zeros when it cannot be read. Any thread.
  [[nodiscard]] static ByteCounts readInterfaceBytes(InterfaceCounters& counters,
                                                     const std::string& interface);

private:
  void prime();
  void sample();
  [[nodiscard]] ByteCounts readPrimaryInterface();
  void publish(const std::shared_ptr<const NetworkSnapshot>& snapshot);

  WorkQueue& m_main;
  Clock& m_clock;
  InterfaceCounters& m_counters;
  ConfigurationStore& m_configuration;

  // Touched on m_workQueue alone.
  LatencyProbe m_probe;
  ByteCounts m_previous;
  double m_previousTimestamp = 0.0; // seconds since 1970; 0 while there is no baseline
  std::int64_t m_sampleCount = 0;   // samples that gave rates since construction

  std::unique_ptr<WorkQueue> m_workQueue;
  std::unique_ptr<Timer> m_timer; // main thread; after the queue, so that it is cancelled first
};

} // namespace tidewell
