#include "ui/placement/ScreenPoint.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tidewell {

namespace {

QRect hostGeometry(const ScreenScale& screen) {
  const QSizeF size = QSizeF(screen.geometry.size()) * screen.scale;
  return {screen.geometry.topLeft(), size.toSize()};
}

QPoint nearestPoint(const QRect& rect, const QPoint& point) {
  return {std::clamp(point.x(), rect.left(), std::max(rect.left(), rect.right())),
          std::clamp(point.y(), rect.top(), std::max(rect.top(), rect.bottom()))};
}

QPoint scaledWithin(const ScreenScale& screen, const QPoint& point) {
  const QPointF offset = QPointF(point - screen.geometry.topLeft()) / screen.scale;
  return screen.geometry.topLeft() +
         QPoint(static_cast<int>(std::floor(offset.x())), static_cast<int>(std::floor(offset.y())));
}

} // namespace

QPoint fromHostPixels(const QPoint& point, const QList<ScreenScale>& screens) {
  qint64 nearest = std::numeric_limits<qint64>::max();
  QPoint result = point;
  for (const ScreenScale& screen : screens) {
    const QPoint inside = nearestPoint(hostGeometry(screen), point);
    const QPoint away = point - inside;
    const qint64 distance = qint64{away.x()} * away.x() + qint64{away.y()} * away.y();
    if (distance < nearest) {
      nearest = distance;
      result = scaledWithin(screen, inside);
    }
  }
  return result;
}

} // namespace tidewell
