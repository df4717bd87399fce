#pragma once

#include <QList>
#include <QPoint>
#include <QRect>
#include <QSize>

namespace tidewell {

/// A screen as the toolkit and as the display server count it.
struct ScreenScale {
  /// In device-independent pixels; its corner is that of the display server.
  QRect geometry;
  /// Device pixels for each of them.
  double scale = 1.0;
};

/// A point of hosts, in the display server's pixels, as the toolkit counts. A point on no screen is
/// taken for one of the nearest. Pure.
[[nodiscard]] QPoint fromHostPixels(const QPoint& point, const QList<ScreenScale>& screens);

/// Space between the panel and the edges of the work area, in device-independent pixels.
constexpr int panelGap = 6;

/// Where the panel may be: the work area without the space that the panel keeps to its edges.
/// `screen` and `workArea` as below. Pure.
[[nodiscard]] QRect panelRoom(const QRect& screen, const QRect& workArea);

/// Where the panel's top left corner goes.
///
/// `anchor` is where the user clicked. `screen` is the whole of the screen and `workArea` what the
/// desktop's bars leave of it. The panel keeps to the bar that was clicked, centred on the click as
/// far as the work area allows, and never leaves the work area, unless it is larger: then its top
/// left is what shows. Pure.
[[nodiscard]] QPoint panelPosition(const QPoint& anchor, const QSize& panel, const QRect& screen,
                                   const QRect& workArea);

/// Where the user would have clicked, when nobody tells: the end of the bar at the top if there is
/// one, else of the one at the bottom. Pure.
[[nodiscard]] QPoint likelyAnchor(const QRect& screen, const QRect& workArea);

} // namespace tidewell
