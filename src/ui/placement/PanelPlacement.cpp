#include "ui/placement/PanelPlacement.h"

#include <algorithm>
#include <cmath>

namespace tidewell {
namespace {

/// The largest distance of a click on a bar from the screen's edge. Half of the thickest bars.
constexpr int nearEdge = 48;

QPoint floored(const QPointF& point) {
  return {static_cast<int>(std::floor(point.x())), static_cast<int>(std::floor(point.y()))};
}

/// The reading of a point in device pixels from the corner of this screen.
QPoint inDevicePixels(const QPoint& point, const QRect& screen, double scale) {
  const QPointF corner = screen.topLeft();
  return floored(corner + (QPointF(point) - corner) / scale);
}

int screenIndex(const QPoint& point, const QList<ScreenArea>& screens) {
  const auto found = std::ranges::find_if(
      screens, [&](const ScreenArea& screen) { return screen.geometry.contains(point); });
  return found == screens.end() ? -1 : static_cast<int>(found - screens.begin());
}

bool isOnBar(const QPoint& point, const QList<ScreenArea>& screens) {
  const int index = screenIndex(point, screens);
  return index >= 0 && !screens[index].workArea.contains(point);
}

/// The work area if the bars are at the edges that are closest to the point.
QRect workAreaBeside(const QPoint& point, const QSize& screen, const QSize& size) {
  const QRect whole(QPoint(0, 0), screen);
  QRect area(QPoint(0, 0), size.boundedTo(screen));
  if (point.y() < whole.center().y()) {
    area.moveBottom(whole.bottom());
  }
  if (point.x() < whole.center().x()) {
    area.moveRight(whole.right());
  }
  return area;
}

/// The end of the bar at the bottom, or at the left if it is a vertical one. A pointer in the upper
/// half of the screen moves it to the top.
QPoint barEnd(std::optional<QPoint> pointer, const QSize& screen, const QSize& workArea) {
  const bool isVertical = workArea.width() < screen.width() && workArea.height() >= screen.height();
  const bool isAbove = pointer && pointer->y() < screen.height() / 2;
  return {isVertical ? 0 : screen.width() - 1, isAbove ? 0 : screen.height() - 1};
}

/// The room without a bar whose middle is the anchor, if it is close to an edge of the screen at
/// which no space is reserved. In a corner it is the top or the bottom, where most bars are.
QRect withoutHiddenBar(const QPoint& anchor, const QRect& screen, QRect room) {
  if (!room.contains(anchor)) {
    return room;
  }
  const int above = anchor.y() - screen.top();
  const int below = screen.bottom() - anchor.y();
  const int left = anchor.x() - screen.left();
  const int right = screen.right() - anchor.x();
  if (std::min(above, below) <= nearEdge) {
    above < below ? room.setTop(anchor.y() + above) : room.setBottom(anchor.y() - below);
  } else if (std::min(left, right) <= nearEdge) {
    left < right ? room.setLeft(anchor.x() + left) : room.setRight(anchor.x() - right);
  }
  return room;
}

/// Moves a span of this length into [first, last].
int within(int begin, int length, int first, int last) {
  return std::max(first, std::min(begin, last - length + 1));
}

} // namespace

QList<QPoint> pointReadings(const QPoint& point, const QList<ScreenArea>& screens,
                            LikelyUnits likely) {
  QList<QPoint> readings;
  const auto add = [&](const QPoint& reading) {
    if (screenIndex(reading, screens) >= 0 && !readings.contains(reading)) {
      readings.append(reading);
    }
  };
  if (likely == LikelyUnits::logical) {
    add(point);
  }
  for (const ScreenArea& screen : screens) {
    const QPoint reading = inDevicePixels(point, screen.geometry, screen.scale);
    if (screen.geometry.contains(reading)) {
      add(reading);
    }
  }
  add(point);
  return readings;
}

QList<QPoint> readingsOn(const QRect& screen, const QPoint& point, const QList<double>& scales) {
  QList<QPoint> readings;
  for (const double scale : QList<double>{1.0} + scales) {
    const QPoint reading = inDevicePixels(point, screen, scale);
    if (screen.contains(reading) && !readings.contains(reading - screen.topLeft())) {
      readings.append(reading - screen.topLeft());
    }
  }
  if (QRect(QPoint(0, 0), screen.size()).contains(point) && !readings.contains(point)) {
    readings.append(point);
  }
  return readings;
}

std::optional<QPoint> clickedPoint(const QList<QPoint>& readings, const QPoint& pointer,
                                   const QList<ScreenArea>& screens) {
  if (isOnBar(pointer, screens)) {
    return pointer;
  }
  const auto isNearPointer = [&](const QPoint& reading) {
    return (reading - pointer).manhattanLength() <= nearEdge;
  };
  auto found = std::ranges::find_if(
      readings, [&](const QPoint& reading) { return isOnBar(reading, screens); });
  if (found == readings.end()) {
    found = std::ranges::find_if(readings, isNearPointer);
  }
  if (found == readings.end()) {
    found = readings.begin();
  }
  return found == readings.end() ? std::nullopt : std::optional(*found);
}

PanelPlace panelPlace(const QList<QPoint>& readings, std::optional<QPoint> pointer,
                      const QSize& screen, const QSize& workArea) {
  const auto at = [&](const QPoint& anchor, bool isCertain) {
    return PanelPlace{anchor, workAreaBeside(anchor, screen, workArea), isCertain};
  };
  const auto isOnBar = [&](const QPoint& point) {
    return !at(point, true).workArea.contains(point);
  };
  if (pointer && isOnBar(*pointer)) {
    return at(*pointer, true);
  }
  const auto found = std::ranges::find_if(readings, isOnBar);
  if (found != readings.end()) {
    // Within a bar, too, such coordinates are small.
    const QSize bars = screen - workArea;
    return at(*found, found->x() >= bars.width() && found->y() >= bars.height());
  }
  // A bar that hides, or one with space around it.
  return at(readings.isEmpty() ? barEnd(pointer, screen, workArea) : readings.first(), false);
}

std::optional<int> clickedScreen(const QList<QPoint>& readings, const QList<ScreenArea>& screens) {
  std::optional<int> agreed;
  for (const QPoint& reading : readings) {
    const int index = screenIndex(reading, screens);
    const bool isRelative = reading.x() < 2 * nearEdge || reading.y() < 2 * nearEdge;
    if (isRelative || (agreed && *agreed != index)) {
      return std::nullopt;
    }
    agreed = index;
  }
  return agreed;
}

QRect panelRoom(const QRect& screen, const QRect& workArea) {
  const QRect room = workArea.isEmpty() ? screen : workArea;
  return room.adjusted(panelGap, panelGap, -panelGap, -panelGap);
}

QPoint panelPosition(const QPoint& anchor, const QSize& panel, const QRect& screen,
                     const QRect& workArea) {
  const QRect known = workArea.isEmpty() ? screen : workArea;
  const QRect free = withoutHiddenBar(anchor, screen, known);
  const QRect room = panelRoom(screen, free).size().boundedTo(panel) == panel ? free : known;
  const QRect inner = panelRoom(screen, room);
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
