#pragma once

#include <QRectF>
#include <QString>
#include <QStringList>

#include <vector>

namespace tidewell {

/// The vertical axis of a chart: from 0 to a round number, with grid lines at round steps.
class ValueAxis {
public:
  /// Covers 0 to `largest`, and at least 0 to `leastTop`, which is above 0.
  ValueAxis(double largest, double leastTop);

  [[nodiscard]] double top() const { return m_top; }
  /// The grid lines in ascending order, from 0 to `top`.
  [[nodiscard]] const std::vector<double>& ticks() const { return m_ticks; }
  /// The label of a grid line without its unit: at most four characters up to a trillion. `units`
  /// are that of the values and, if there are any, those of a thousand times as much each.
  [[nodiscard]] QString label(double tick, const QStringList& units) const;
  /// The unit of the labels.
  [[nodiscard]] QString unit(const QStringList& units) const;
  /// The position of a value. Values outside of the axis are at its ends.
  [[nodiscard]] double yOf(double value, const QRectF& plot) const;

private:
  double m_step;
  double m_top;
  std::vector<double> m_ticks;
};

} // namespace tidewell
