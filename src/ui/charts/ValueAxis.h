#pragma once

#include <QRectF>
#include <QString>

#include <vector>

namespace tidewell {

/// The vertical axis of a chart: from 0 up to a round number, with grid lines at round distances.
class ValueAxis {
public:
  /// Covers 0 to `largest`, and at least to `leastTop`, which is above 0.
  ValueAxis(double largest, double leastTop);

  [[nodiscard]] double top() const { return m_top; }
  /// Values of the grid lines, upwards; the first is 0, the last `top`.
  [[nodiscard]] const std::vector<double>& ticks() const { return m_ticks; }
  /// The text beside a grid line: at most four characters up to a trillion.
  [[nodiscard]] QString label(double tick) const;
  /// Where a value lies. One outside of the axis lies at its end.
  [[nodiscard]] double yOf(double value, const QRectF& plot) const;

private:
  double m_step;
  double m_top;
  std::vector<double> m_ticks;
};

} // namespace tidewell
