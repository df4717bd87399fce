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
  /// Starts counting.
  Goodput(Seconds now, std::uint64_t bytes);

  /// An interval ends: `bytes` is the count that the constructor was given, by now.
  void endInterval(Seconds now, std::uint64_t bytes);

  [[nodiscard]] std::size_t intervals() const { return m_points.size() - 1; }

  /// Whether the line gives no more.
  [[nodiscard]] bool isSaturated() const { return m_averages.isSteady(); }

  /// Bytes per second in the last four intervals, or in as many as there are; 0 before the first.
  [[nodiscard]] double current() const;

  /// Bytes per second since `windowBegin`: what the line is capable of. 0 before the first
  /// interval has ended.
  [[nodiscard]] double capacity() const;

  /// When the averages began that were found steady; of a line that is not saturated the beginning
  /// of the last four intervals.
  [[nodiscard]] Seconds windowBegin() const { return m_points[windowIndex()].time; }

  /// Whether next to nothing was moved in the last four intervals, long after the start.
  [[nodiscard]] bool isStalled() const;

private:
  struct Point {
    Seconds time;
    std::uint64_t bytes;
  };

  [[nodiscard]] std::size_t lastIndex(std::size_t intervalsAgo) const;
  [[nodiscard]] std::size_t windowIndex() const;
  [[nodiscard]] double rateSince(std::size_t index) const;

  std::vector<Point> m_points;
  MovingAverages m_averages;
};

} // namespace tidewell
