#include "ui/placement/PanelPlacement.h"

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

/// Moves a span of this length into [first, last].
int within(int begin, int length, int first, int last) {
  return std::max(first, std::min(begin, last - length + 1));
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

QRect panelRoom(const QRect& screen, const QRect& workArea) {
  const QRect room = workArea.isEmpty() ? screen : workArea;
  return room.adjusted(panelGap, panelGap, -panelGap, -panelGap);
}

QPoint panelPosition(const QPoint& anchor, const QSize& panel, const QRect& screen,
                     const QRect& workArea) {
  const QRect room = workArea.isEmpty() ? screen : workArea;
  const QRect inner = panelRoom(screen, workArea);
  QPoint corner(anchor.x() - panel.width() / 2, anchor.y() - panel.height() / 2);
  if (anchor.x() < room.left() || anchor.x() > room.right()) {
    // A vertical bar. The panel goes beside it.
    corner.setX(anchor.x() < room.left() ? inner.left() : inner.right() - panel.width() + 1);
  } else if (anchor.y() <= room.center().y()) {
    corner.setY(anchor.y() < room.top() ? inner.top() : anchor.y() + panelGap);
  } else {
    corner.setY((anchor.y() > room.bottom() ? inner.bottom() + 1 : anchor.y() - panelGap) -
                panel.height());
  }
  return {within(corner.x(), panel.width(), inner.left(), inner.right()),
          within(corner.y(), panel.height(), inner.top(), inner.bottom())};
}

QPoint likelyAnchor(const QRect& screen, const QRect& workArea) {
  const bool isBarBelow = workArea.top() == screen.top() && workArea.bottom() < screen.bottom();
  return {screen.right(), isBarBelow ? screen.bottom() : screen.top() - 1};
}

} // namespace tidewell
