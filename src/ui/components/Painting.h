#pragma once

#include <QPainter>
#include <QRectF>

namespace tidewell {

/// Draws the outline that marks what the keyboard acts on, along the inside of a rectangle. Wants
/// an antialiasing painter.
void drawFocusRing(QPainter& painter, const QRectF& rect, double radius);

} // namespace tidewell
