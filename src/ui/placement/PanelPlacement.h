#pragma once

#include <QList>
#include <QPoint>
#include <QRect>
#include <QSize>

namespace tidewell {

/// A screen in the toolkit's and the display server's coordinates.
struct ScreenScale {
  /// In device-independent pixels, with the display server's top left corner.
  QRect geometry;
  /// Device pixels per device-independent pixel.
  double scale = 1.0;
};

/// Converts a point from the display server's pixels to the toolkit's. A point outside of all
/// screens maps to the nearest screen.
[[nodiscard]] QPoint fromHostPixels(const QPoint& point, const QList<ScreenScale>& screens);

/// Space between the panel and the edges of the work area, in device-independent pixels.
constexpr int panelGap = 6;

/// The area available to the panel: the work area without the gap at its edges. `screen` and
/// `workArea` as below.
[[nodiscard]] QRect panelRoom(const QRect& screen, const QRect& workArea);

/// Returns the panel's top left corner.
///
/// `anchor` is where the user clicked. `screen` is the whole screen and `workArea` the part without
/// the desktop's bars. The panel is next to the clicked bar, centred on the click if possible, and
/// stays inside the work area. If it is larger than the work area, its top left part is visible.
[[nodiscard]] QPoint panelPosition(const QPoint& anchor, const QSize& panel, const QRect& screen,
                                   const QRect& workArea);

/// A likely position of the click if it is unknown: the end of the top bar, otherwise of the bottom
/// bar.
[[nodiscard]] QPoint likelyAnchor(const QRect& screen, const QRect& workArea);

} // namespace tidewell
