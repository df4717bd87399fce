#include "ui/components/icons/IconShapes.h"

namespace tidewell {

QPainterPath iconShapes::barChart() {
  QPainterPath path;
  path.addRoundedRect(QRectF(0.0, 6.0, 3.0, 5.0), 0.8, 0.8);
  path.addRoundedRect(QRectF(4.0, 3.0, 3.0, 8.0), 0.8, 0.8);
  path.addRoundedRect(QRectF(8.0, 0.0, 3.0, 11.0), 0.8, 0.8);
  return path;
}

} // namespace tidewell
