#pragma once

#include <QPainter>
#include <QRectF>

namespace tidewell {

/// A painter that antialiases.
class SmoothPainter final : public QPainter {
public:
  explicit SmoothPainter(QPaintDevice* device) : QPainter(device) {
    setRenderHint(QPainter::Antialiasing);
  }
};

/// Fills a rounded rectangle, without an outline. Expects an antialiasing painter.
void fillRounded(QPainter& painter, const QRectF& rect, double radius, const QBrush& brush);

/// Fills a disc, without an outline. Expects an antialiasing painter.
void fillDisc(QPainter& painter, QPointF centre, double radius, const QBrush& brush);

/// Draws the keyboard focus along the inside of a rectangle. Expects an antialiasing painter.
void drawFocusRing(QPainter& painter, const QRectF& rect, double radius);

} // namespace tidewell
