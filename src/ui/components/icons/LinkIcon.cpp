#include "ui/components/icons/IconShapes.h"

#include <QTransform>

namespace tidewell {

namespace {

constexpr double penWidth = 1.3;

// One link of the chain, open where the other one passes through.
QPainterPath halfLink() {
  QPainterPath path({5.1, 3.6});
  path.lineTo(2.9, 3.6);
  path.cubicTo({-0.1, 3.6}, {-0.1, 7.4}, {2.9, 7.4});
  path.lineTo(5.1, 7.4);
  return path;
}

} // namespace

QPainterPath iconShapes::link() {
  QPainterPath chain = halfLink();
  const QTransform mirrored(-1.0, 0.0, 0.0, 1.0, 11.0, 0.0);
  chain.addPath(mirrored.map(halfLink()));
  chain.moveTo(3.6, 5.5);
  chain.lineTo(7.4, 5.5);
  QTransform slanted;
  slanted.translate(5.5, 5.5).rotate(-45.0).translate(-5.5, -5.5);
  QPainterPath shape = penned(slanted.map(chain), penWidth);
  shape.setFillRule(Qt::WindingFill);
  return shape;
}

} // namespace tidewell
