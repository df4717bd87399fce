#pragma once

#include "base/Scheduler.h"
#include "helpers/networkQuality/Goodput.h"
#include "helpers/networkQuality/MovingAverages.h"
#include "helpers/networkQuality/ProbePace.h"
#include "helpers/networkQuality/RoundTrips.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace tidewell {

/// How far the numbers of one direction can be trusted.
enum class Confidence {
  low,    // too few intervals for an average
  medium, // they still moved
  high,   // steady
};

/// What is known of one direction of the line.
struct LineResult {
  double bytesPerSecond = 0.0;
  std::optional<RoundTripMeans> roundTrips;
  Confidence confidence = Confidence::low;
  std::size_t connections = 0;
};

/// Decides about one direction, interval by interval: when to add load, when enough is known, and
/// what comes of it. Knows no socket; times are of any clock that moves only forward. Pure.
///
/// The rules are those of draft-ietf-ippm-responsiveness with intervals of one second: until the
/// line is saturated, then until the round trips are steady, too. Further connections all come as
/// soon as it is known how many the line can feed.
class LineMeasurement {
public:
  static constexpr Seconds interval = 1.0;

  /// Starts with one connection that has moved `bytes`.
  LineMeasurement(Seconds now, std::uint64_t bytes);

  void addForeign(Seconds now, const ForeignProbe& probe, double bytes);
  void addSelf(Seconds now, double seconds) { m_roundTrips.addSelf(now, seconds); }

  /// Notes what the direction has moved, ten times an interval or so.
  void sample(Seconds now, std::uint64_t bytes) { m_goodput.sample(now, bytes); }

  /// An interval ends; `bytes` is all that the direction has moved by now.
  void endInterval(Seconds now, std::uint64_t bytes);

  /// How many connections are to load the line from now on.
  [[nodiscard]] std::size_t connections() const { return m_connections; }

  /// The time between two pairs of probes.
  [[nodiscard]] Seconds probeInterval() const { return m_pace.interval(m_goodput.current()); }

  /// Whether nothing changes any more.
  [[nodiscard]] bool isDone() const;

  /// Whether the line has stopped moving anything.
  [[nodiscard]] bool isStalled() const { return m_goodput.isStalled(); }

  /// What is known by now; none before the first interval has ended.
  [[nodiscard]] std::optional<LineResult> result() const;

private:
  Goodput m_goodput;
  RoundTrips m_roundTrips;
  MovingAverages m_responsiveness;
  ProbePace m_pace;
  std::size_t m_connections = 1;
};

} // namespace tidewell
