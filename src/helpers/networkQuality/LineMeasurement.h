#pragma once

#include "base/Scheduler.h"
#include "helpers/networkQuality/Goodput.h"
#include "helpers/networkQuality/RoundTrips.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace tidewell {

/// How reliable the numbers of one direction are.
enum class Confidence {
  low,    // too few intervals for an average
  medium, // the averages still moved
  high,   // steady
};

/// What was measured of one direction of the line.
struct LineResult {
  double bytesPerSecond = 0.0;
  std::optional<RoundTripMeans> roundTrips;
  Confidence confidence = Confidence::low;
  std::size_t connections = 0;
};

/// Decides about one direction, interval by interval: when to add load, when the measurement is
/// done, and what its result is. Times are of any monotonic clock. Pure.
///
/// The rules are those of draft-ietf-ippm-responsiveness with intervals of one second: the line has
/// to be saturated, then the round trips have to be steady. All further connections are opened as
/// soon as it is known how many the line can feed.
class LineMeasurement {
public:
  static constexpr Seconds interval = 1.0;

  /// Starts with one connection that has moved `bytes`.
  LineMeasurement(Seconds now, std::uint64_t bytes);

  void addForeign(Seconds now, const ForeignProbe& probe, double bytes);
  void addSelf(Seconds now, double seconds) { m_roundTrips.addSelf(now, seconds); }

  /// Records what the direction has moved, about ten times an interval.
  void sample(Seconds now, std::uint64_t bytes) { m_goodput.sample(now, bytes); }

  /// Ends an interval; `bytes` is all that the direction has moved by now.
  void endInterval(Seconds now, std::uint64_t bytes);

  /// How many connections should load the line from now on.
  [[nodiscard]] std::size_t connections() const { return m_connections; }

  /// The time between two pairs of probes.
  [[nodiscard]] Seconds probeInterval() const { return m_pace.interval(m_goodput.current()); }

  /// Whether the measurement is done.
  [[nodiscard]] bool isDone() const;

  /// Whether the line has stopped moving anything.
  [[nodiscard]] bool isStalled() const { return m_goodput.isStalled(); }

  /// The result by now; nullopt before the first interval has ended.
  [[nodiscard]] std::optional<LineResult> result() const;

private:
  Goodput m_goodput;
  RoundTrips m_roundTrips;
  MovingAverages m_responsiveness;
  ProbePace m_pace;
  std::size_t m_connections = 1;
};

} // namespace tidewell
