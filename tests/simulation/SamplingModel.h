#pragma once

#include "Findings.h"
#include "TimerGrid.h"
#include "base/Clock.h"
#include "platform/InterfaceCounters.h"
#include "sampling/SamplerState.h"

#include <cstdint>
#include <deque>
#include <optional>
#include <vector>

namespace tidewell::test {

/// The publications required of a sampler, derived independently from its readings: which readings
/// give a sample, the rates, the quality after each probe, the history, the order of the writes.
///
/// A sample starts from the quality published when it was taken, which after a long probe may be
/// one publication old. From there each probe changes the loss by +10 (up to 100) or by -5 (down to
/// 0); nothing else does.
class SamplingModel {
public:
  SamplingModel(const VirtualScheduler& scheduler, const Clock& clock, Findings& findings);

  /// A new sampler, of which only the published values are known.
  void adopt(SamplerState& sampler);
  /// The sampler has ended: nothing may be read, probed or published.
  void release();

  /// Call it just before the sampler is started or stopped.
  void starts(double interval);
  void stops() { m_grid.reset(); }

  /// The sampler reads the counters; nobody else does.
  void reads(const ByteCounts& counts);
  /// A probe begins. It takes this long and has this latency, nullopt if it fails.
  void probes(std::optional<double> latency, Ticks takes);
  /// The whole history is compared each time after this many samples.
  static constexpr std::int64_t comparedEvery = 200;

  /// Call it when everything that is due has run.
  void checkNothingIsMissing();

  [[nodiscard]] std::int64_t published() const { return m_published; }

private:
  struct Reading {
    double time;
    ByteCounts counts;
  };
  struct Expected {
    double time;
    std::int64_t download;
    std::int64_t upload;
    double latency;
    double jitter;
    double loss;
    bool awaitsProbe;
  };

  void watch(SamplerState& sampler);
  template <class T> void hears(int place, const T& value, T Expected::*field, const char* rule);
  void checkHistory(const SnapshotList& history);
  [[nodiscard]] double jitterWith(double latency, double carried);

  const VirtualScheduler& m_scheduler;
  const Clock& m_clock;
  Findings& m_findings;
  SamplerState* m_sampler = nullptr;
  std::optional<TimerGrid> m_grid;
  int m_baselinesDue = 0; // starts whose baseline has not been read
  Ticks m_freeAt = Ticks::zero();
  std::optional<Reading> m_before;
  std::int64_t m_samples = 0;
  std::deque<double> m_window;
  std::deque<Expected> m_expected;
  int m_place = 0; // which of the six writes of a publication comes next
  SnapshotList m_history;
  std::int64_t m_published = 0;
  bool m_attaching = false;
  std::vector<Subscription> m_subscriptions;
};

} // namespace tidewell::test
