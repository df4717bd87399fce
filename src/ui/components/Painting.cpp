#include "ui/components/Painting.h"

#include "ui/tokens/TWColor.h"

namespace tidewell {
namespace {

constexpr double ringWidth = 1.5;

} // namespace

void fillRounded(QPainter& painter, const QRectF& rect, double radius, const QBrush& brush) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(brush);
  painter.drawRoundedRect(rect, radius, radius);
}

void fillDisc(QPainter& painter, QPointF centre, double radius, const QBrush& brush) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(brush);
  painter.drawEllipse(centre, radius, radius);
}

void drawFocusRing(QPainter& painter, const QRectF& rect, double radius) {
  constexpr double inset = ringWidth / 2.0;
  painter.setPen(QPen(TWColor::accent, ringWidth));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(rect.adjusted(inset, inset, -inset, -inset), radius - inset,
                          radius - inset);
}

} // namespace tidewell
