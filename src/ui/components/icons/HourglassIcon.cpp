#include "ui/components/icons/IconShapes.h"

namespace tidewell {

namespace {

// The right half mirrors the left one.
QPainterPath glass() {
  QPainterPath path({2.5, 1.0});
  path.cubicTo({2.5, 3.6}, {4.7, 4.2}, {4.7, 5.5});
  path.cubicTo({4.7, 6.8}, {2.5, 7.4}, {2.5, 10.0});
  path.moveTo(8.5, 1.0);
  path.cubicTo({8.5, 3.6}, {6.3, 4.2}, {6.3, 5.5});
  path.cubicTo({6.3, 6.8}, {8.5, 7.4}, {8.5, 10.0});
  return path;
}

QPainterPath sand() {
  QPainterPath path({5.5, 6.6});
  path.cubicTo({6.0, 7.8}, {7.4, 8.2}, {7.6, 9.6});
  path.lineTo(3.4, 9.6);
  path.cubicTo({3.6, 8.2}, {5.0, 7.8}, {5.5, 6.6});
  return path;
}

} // namespace

QPainterPath iconShapes::hourglass() {
  QPainterPath path;
  path.setFillRule(Qt::WindingFill);
  path.addRoundedRect(QRectF(1.0, 0.0, 9.0, 1.2), 0.6, 0.6);
  path.addRoundedRect(QRectF(1.0, 9.8, 9.0, 1.2), 0.6, 0.6);
  path.addPath(penned(glass(), 1.0));
  path.addPath(sand());
  return path;
}

} // namespace tidewell
