#include "ui/components/icons/IconShapes.h"

namespace tidewell {

QPainterPath iconShapes::drive() {
  QPainterPath path;
  path.setFillRule(Qt::OddEvenFill);
  // The lid, seen from above.
  path.moveTo(2.6, 1.6);
  path.lineTo(8.4, 1.6);
  path.lineTo(10.6, 5.4);
  path.lineTo(0.4, 5.4);
  path.closeSubpath();
  // The front, with its light.
  path.addRoundedRect(QRectF(0.2, 6.0, 10.6, 3.6), 1.0, 1.0);
  path.addEllipse(QPointF(8.6, 7.8), 0.7, 0.7);
  return path;
}

} // namespace tidewell
