#pragma once

#include "base/Scheduler.h"
#include "helpers/networkQuality/MovingAverages.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tidewell {

/// How many bytes a direction of the line moves, from the count at the end of each interval. Times
/// are of any clock that moves only forward. Pure.
class Goodput {
public:
  /// What a window has to hold, in bytes: a lost packet holds up the count of what follows it, by a
  /// queue's worth, which is one percent of this.
  static constexpr double leastWindow = 1.25e6;

  /// Starts counting.
  Goodput(Seconds now, std::uint64_t bytes);

  /// Notes the count within an interval, for the capacity.
  void sample(Seconds now, std::uint64_t bytes) { m_samples.push_back({now, bytes}); }

  /// An interval ends: `bytes` is the count that the constructor was given, by now.
  void endInterval(Seconds now, std::uint64_t bytes);

  [[nodiscard]] std::size_t intervals() const { return m_points.size() - 1; }

  /// Whether the line gives no more.
  [[nodiscard]] bool isSaturated() const { return m_averages.isSteady(); }

  /// Bytes per second in the last four intervals, or in as many as there are; 0 before the first.
  [[nodiscard]] double current() const;

  /// Bytes per second since the averages began that were found steady; of a line that is not
  /// saturated, in the last four intervals, or in as many as hold `leastWindow`, the first three
  /// aside: what the line is capable of. 0 before the first interval has ended.
  ///
  /// While a lost packet is awaited, what comes after it is not counted yet, up to a whole queue.
  /// So the rate is taken between the moments at the window's two ends at which least was missing.
  [[nodiscard]] double capacity() const;

  /// The bytes that the capacity was taken from.
  [[nodiscard]] double windowBytes() const;

  /// When the last so many intervals began, or as many as hold `leastWindow`; or later: when the
  /// averages did that were found steady.
  [[nodiscard]] Seconds loadedSince(std::size_t intervals) const;

  /// Whether next to nothing was moved in the last four intervals, long after the start.
  [[nodiscard]] bool isStalled() const;

private:
  struct Point {
    Seconds time;
    std::uint64_t bytes;
  };

  [[nodiscard]] std::size_t lastIndex(std::size_t intervalsAgo) const;
  [[nodiscard]] std::size_t filledIndex(std::size_t intervalsAgo) const;
  [[nodiscard]] std::size_t windowIndex() const;
  [[nodiscard]] double bytesSince(std::size_t index) const;
  [[nodiscard]] double rateSince(std::size_t index) const;
  [[nodiscard]] static double rateBetween(const Point& begin, const Point& end);
  [[nodiscard]] Point fullest(Seconds begin, Seconds end, double rate) const;

  std::vector<Point> m_points;  // the ends of intervals
  std::vector<Point> m_samples; // those and others
  MovingAverages m_averages;
};

} // namespace tidewell
