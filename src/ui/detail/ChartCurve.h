#pragma once

#include <QPainter>
#include <QPolygonF>

#include <vector>

namespace tidewell {

class ValueAxis;

/// A line through values that are evenly spaced from the left edge of the plot to the right one.
/// It is interrupted where a value cannot be drawn.
class ChartCurve {
public:
  ChartCurve(const std::vector<double>& values, const ValueAxis& axis, const QRectF& plot);

  /// Pieces without an interruption, from left to right.
  [[nodiscard]] const std::vector<QPolygonF>& pieces() const { return m_pieces; }

  /// Draws the line; a piece of one value as a dot. Wants an antialiasing painter.
  void draw(QPainter& painter, const QColor& color, double width) const;

  /// Fills what lies between the line and the bottom of the plot.
  void fill(QPainter& painter, const QBrush& brush, const QRectF& plot) const;

  /// Whether there is a place for the value on an axis.
  [[nodiscard]] static bool isDrawable(double value);

  /// The largest value that can be drawn; 0 without one.
  [[nodiscard]] static double largest(const std::vector<double>& values);

private:
  std::vector<QPolygonF> m_pieces;
};

} // namespace tidewell
