#include "ui/components/icons/IconShapes.h"

#include <QPolygonF>

namespace tidewell {

QPainterPath iconShapes::bolt() {
  QPainterPath path;
  path.addPolygon({{6.9, 0.4}, {2.1, 6.2}, {5.1, 6.2}, {4.1, 10.6}, {8.9, 4.6}, {5.8, 4.6}});
  path.closeSubpath();
  // A thin pen around it takes the needles off the corners.
  QPainterPath rounded = path.united(penned(path, 0.6));
  rounded.setFillRule(Qt::WindingFill);
  return rounded;
}

} // namespace tidewell
