#include "ui/placement/PanelPlacement.h"

#include <algorithm>

namespace tidewell {

namespace {

/// Keeps a span of this length within [first, last].
int within(int begin, int length, int first, int last) {
  return std::max(first, std::min(begin, last - length + 1));
}

} // namespace

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
    // A bar at the side: the panel stands beside it.
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
