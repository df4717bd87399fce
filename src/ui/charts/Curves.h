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

/// Draws a curve whose points go from left to right, in pieces: the time that the rasterizer takes
/// for a line grows with the square of its length, so that 300 points at once take ten times as
/// long. Dashes go on from piece to piece.
void drawCurve(QPainter& painter, const QPolygonF& curve, QPen pen);

/// Fills what lies between the curve and the horizontal at `bottom`, in pieces that meet on whole
/// pixels and so show no seam.
void fillBelow(QPainter& painter, const QPolygonF& curve, double bottom, const QBrush& brush);

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

/// The curves of a throughput chart: one point per sample, in the order of the samples and evenly
/// spaced whatever their times, the oldest at the left edge and the newest at the right one. Both
/// share one vertical scale, from 0 at the bottom to the largest rate at the top.
struct GraphCurves {
  QPolygonF download;
  QPolygonF upload;

  /// `plot` is where the points lie.
  GraphCurves(const SnapshotList& snapshots, const QRectF& plot);
};

/// The largest rate of either direction, in megabits per second; 0 for no samples.
[[nodiscard]] double topOfScale(const SnapshotList& snapshots);

/// A rate in bytes per second as megabits per second.
[[nodiscard]] double megabits(std::int64_t bytesPerSec);

} // namespace tidewell
