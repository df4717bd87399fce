#include "ui/components/Painting.h"

#include "ui/tokens/TWColor.h"

namespace tidewell {

namespace {

constexpr double ringWidth = 1.5;

} // namespace

void drawFocusRing(QPainter& painter, const QRectF& rect, double radius) {
  constexpr double inset = ringWidth / 2.0;
  painter.setPen(QPen(TWColor::accent(), ringWidth));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(rect.adjusted(inset, inset, -inset, -inset), radius - inset,
                          radius - inset);
}

} // namespace tidewell
