#pragma once

#include "base/Scheduler.h"
#include "helpers/networkQuality/Statistics.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tidewell {

/// How many bytes a direction of the line moves, from the count at the end of each interval. Times
/// are of any monotonic clock. Pure.
class Goodput {
public:
  /// The least bytes of a window. A lost packet delays the count of what follows it by up to a
  /// queue, which is one percent of this.
  static constexpr double leastWindow = 1.25e6;

  /// Starts counting.
  Goodput(Seconds now, std::uint64_t bytes);

  /// Records the count within an interval, for the capacity.
  void sample(Seconds now, std::uint64_t bytes) { m_samples.push_back({now, bytes}); }

  /// Ends an interval; `bytes` is the count by now.
  void endInterval(Seconds now, std::uint64_t bytes);

  [[nodiscard]] std::size_t intervals() const { return m_points.size() - 1; }

  /// Whether the line is at its limit.
  [[nodiscard]] bool isSaturated() const { return m_averages.isSteady(); }

  /// Bytes per second in the last four intervals, or in as many as there are; 0 before the first
  /// has ended.
  [[nodiscard]] double current() const;

  /// The capacity: bytes per second since the steady averages began. On a line that is not
  /// saturated, of the last four intervals, or of as many as hold `leastWindow`, without the first
  /// three. 0 before the first interval has ended.
  ///
  /// What follows a lost packet, up to a whole queue, is not counted until the packet is repeated.
  /// So the rate is taken between the moments near the window's ends at which least was missing.
  [[nodiscard]] double capacity() const;

  /// The bytes that the capacity was taken from.
  [[nodiscard]] double windowBytes() const;

  /// When the last so many intervals began, or as many as hold `leastWindow`, but not before the
  /// steady averages.
  [[nodiscard]] Seconds loadedSince(std::size_t intervals) const;

  /// Whether next to nothing moved in the last four intervals.
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
