#pragma once

#include <QBrush>
#include <QPainter>
#include <QPen>
#include <QPolygonF>

namespace tidewell {

/// Draws a curve whose points go from left to right, in pieces: the time that the rasterizer takes
/// for a line grows with the square of its length, so that 300 points at once take ten times as
/// long. Dashes go on from piece to piece.
void drawCurve(QPainter& painter, const QPolygonF& curve, QPen pen);

/// Fills what lies between the curve and the horizontal at `bottom`, in pieces that meet on whole
/// pixels and so show no seam.
void fillBelow(QPainter& painter, const QPolygonF& curve, double bottom, const QBrush& brush);

} // namespace tidewell
