#include "ui/components/icons/Icon.h"

#include "ui/components/icons/IconShapes.h"

#include <QPainterPathStroker>

#include <array>
#include <cstddef>

namespace tidewell {

namespace {

const QPainterPath& shapeOf(Icon icon) {
  // In the order of the enumeration.
  static const std::array<QPainterPath, 10> shapes = {
      iconShapes::bolt(),     iconShapes::hourglass(), iconShapes::copy(),  iconShapes::checkMark(),
      iconShapes::barChart(), iconShapes::gear(),      iconShapes::power(), iconShapes::bell(),
      iconShapes::drive(),    iconShapes::link()};
  return shapes.at(static_cast<std::size_t>(icon));
}

} // namespace

QPainterPath iconShapes::penned(const QPainterPath& path, double width) {
  QPainterPathStroker stroker;
  stroker.setWidth(width);
  stroker.setCapStyle(Qt::RoundCap);
  stroker.setJoinStyle(Qt::RoundJoin);
  return stroker.createStroke(path);
}

void drawIcon(QPainter& painter, Icon icon, QPointF topLeft, const QColor& color) {
  painter.save();
  painter.translate(topLeft);
  painter.fillPath(shapeOf(icon), color);
  painter.restore();
}

} // namespace tidewell
