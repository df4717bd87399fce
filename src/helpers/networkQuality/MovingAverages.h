#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace tidewell {

/// How many intervals a moving average spans, and how many of them have to agree: the distance of
/// the responsiveness measurement (draft-ietf-ippm-responsiveness).
constexpr std::size_t averageDistance = 4;

/// The moving averages of one measured quantity, one for each interval, and when they settled.
class MovingAverages {
public:
  /// The average that ends with the present interval; none when there is none, and then what was
  /// steady is no longer.
  void add(std::optional<double> average);

  /// Whether the last four averages differ by less than five percent in standard deviation.
  [[nodiscard]] bool isSteady() const { return m_steadySince != 0; }

  /// Whether each of the last four or five averages was higher than the one before, or each lower,
  /// and all that by more than eight percent: steady by their deviation, and yet on their way.
  [[nodiscard]] bool isDrifting() const;

  /// How many intervals had been counted when the averages became steady; 0 while they are not.
  [[nodiscard]] std::size_t steadySince() const { return m_steadySince; }

private:
  [[nodiscard]] std::span<const double> last(std::size_t count) const;

  std::vector<double> m_last; // as many as drift at most
  std::size_t m_intervals = 0;
  std::size_t m_steadySince = 0;
};

} // namespace tidewell
