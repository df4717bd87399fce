#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace tidewell {

/// The arithmetic mean; 0 of no values.
[[nodiscard]] double mean(std::span<const double> values);

/// The mean of the lowest 95 % of the values, and of at least one: the highest twentieth shows lost
/// packets rather than the line. 0 of no values.
[[nodiscard]] double trimmedMean(std::vector<double> values);

/// Whether the standard deviation of the values is below `tolerance` times their last one.
[[nodiscard]] bool isSteady(std::span<const double> values, double tolerance);

/// How many intervals a moving average spans, and how many averages have to agree
/// (draft-ietf-ippm-responsiveness).
constexpr std::size_t averageDistance = 4;

/// The moving averages of one quantity, one for each interval, and when they became steady.
class MovingAverages {
public:
  /// Adds the average that ends with this interval. Without one, the averages are no longer steady.
  void add(std::optional<double> average);

  /// Whether the last four averages differ by less than five percent in standard deviation.
  [[nodiscard]] bool isSteady() const { return m_steadySince != 0; }

  /// Whether the last four or five averages all rose, or all fell, by more than eight percent in
  /// total. They may be steady by their deviation nevertheless.
  [[nodiscard]] bool isDrifting() const;

  /// How many intervals had been counted when the averages became steady; 0 while they are not.
  [[nodiscard]] std::size_t steadySince() const { return m_steadySince; }

private:
  [[nodiscard]] std::span<const double> last(std::size_t count) const;

  std::vector<double> m_last; // the last five
  std::size_t m_intervals = 0;
  std::size_t m_steadySince = 0;
};

} // namespace tidewell
