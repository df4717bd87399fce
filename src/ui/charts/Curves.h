#pragma once

#include "sampling/NetworkSnapshot.h"

#include <QBrush>
#include <QPainter>
#include <QPen>
#include <QPolygonF>
#include <QRectF>

#include <vector>

namespace tidewell {

class ValueAxis;

/// The least top of a throughput chart's scale, in megabits per second. Idle machines stay below
/// it, and their few bytes are no hills.
inline constexpr double leastMegabits = 0.1;

/// Draws a curve of points from left to right, in pieces. The rasterizer's time grows with the
/// square of a line's length: 300 points at once take ten times as long. Dashes continue across
/// pieces.
void drawCurve(QPainter& painter, const QPolygonF& curve, QPen pen);

/// Fades from the colour at `top` to nothing at `bottom`.
[[nodiscard]] QBrush fadeBetween(double top, double bottom, const QColor& color);

/// Fills the area between the curve and `bottom`, in pieces that meet on whole pixels and so show
/// no seams.
void fillBelow(QPainter& painter, const QPolygonF& curve, double bottom, const QBrush& brush);

/// A line through values that are evenly spaced across the plot. It is interrupted at values that
/// cannot be drawn.
class ChartCurve {
public:
  ChartCurve(const std::vector<double>& values, const ValueAxis& axis, const QRectF& plot);

  /// The uninterrupted pieces, from left to right.
  [[nodiscard]] const std::vector<QPolygonF>& pieces() const { return m_pieces; }

  /// Draws the line. A piece of one value becomes a dot inside the plot. Expects an antialiasing
  /// painter.
  void draw(QPainter& painter, const QColor& color, double width) const;

  /// Fills the area between the line and the bottom of the plot. The colour fades from the line's
  /// highest point.
  void fill(QPainter& painter, const QColor& color) const;

  /// Whether an axis can show the value.
  [[nodiscard]] static bool isDrawable(double value);

  /// The largest drawable value, or 0 without any.
  [[nodiscard]] static double largest(const std::vector<double>& values);

private:
  QRectF m_plot;
  std::vector<QPolygonF> m_pieces;
};

/// The curves of a throughput chart: one point per sample, evenly spaced regardless of time, the
/// oldest at the left edge and the newest at the right edge. Both share one scale, from 0 at the
/// bottom to the largest rate at the top, or to `leastMegabits`.
struct GraphCurves {
  QPolygonF download;
  QPolygonF upload;

  /// `plot` is the area of the points.
  GraphCurves(const SnapshotList& snapshots, const QRectF& plot);
};

/// The largest rate of either direction in megabits per second, or 0 without samples.
[[nodiscard]] double topOfScale(const SnapshotList& snapshots);

/// Converts bytes per second to megabits per second.
[[nodiscard]] double megabits(std::int64_t bytesPerSec);

} // namespace tidewell
