#include "ui/components/icons/IconShapes.h"

namespace tidewell {

QPainterPath iconShapes::power() {
  // A ring that is open for 80 degrees at the top, where the stroke stands.
  QPainterPath path;
  const QRectF ring(1.2, 1.7, 8.6, 8.6);
  path.arcMoveTo(ring, 130.0);
  path.arcTo(ring, 130.0, 280.0);
  path.moveTo(5.5, 0.8);
  path.lineTo(5.5, 5.2);
  QPainterPath shape = penned(path, 1.3);
  shape.setFillRule(Qt::WindingFill);
  return shape;
}

} // namespace tidewell
