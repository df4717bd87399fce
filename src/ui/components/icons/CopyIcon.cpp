#include "ui/components/icons/IconShapes.h"

namespace tidewell {

namespace {

constexpr double penWidth = 1.0;

// The sheet behind, where the one in front leaves it to be seen.
QPainterPath sheetBehind() {
  QPainterPath path({2.5, 7.5});
  path.lineTo(1.8, 7.5);
  path.quadTo(0.5, 7.5, 0.5, 6.2);
  path.lineTo(0.5, 1.8);
  path.quadTo(0.5, 0.5, 1.8, 0.5);
  path.lineTo(6.2, 0.5);
  path.quadTo(7.5, 0.5, 7.5, 1.8);
  path.lineTo(7.5, 2.5);
  return path;
}

} // namespace

QPainterPath iconShapes::copy() {
  QPainterPath sheetInFront;
  sheetInFront.addRoundedRect(QRectF(3.5, 3.5, 7.0, 7.0), 1.3, 1.3);
  QPainterPath path;
  path.setFillRule(Qt::WindingFill);
  path.addPath(penned(sheetInFront, penWidth));
  path.addPath(penned(sheetBehind(), penWidth));
  return path;
}

} // namespace tidewell
