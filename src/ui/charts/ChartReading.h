#pragma once

#include <QColor>
#include <QPainter>
#include <QRectF>
#include <QString>

#include <vector>

namespace tidewell {

/// A piece of a reading's text.
struct ReadingPart {
  QString text;
  QColor color;
};

/// What a chart shows of the sample under the pointer.
struct ChartReading {
  /// The sample's position, in the plot's coordinates.
  double x = 0.0;
  std::vector<ReadingPart> parts;

  /// Draws a line at `x`, on whole device pixels, and the text beside it, all of it inside the
  /// plot. Expects an antialiasing painter.
  void draw(QPainter& painter, const QRectF& plot) const;
};

} // namespace tidewell
