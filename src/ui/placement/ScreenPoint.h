#pragma once

#include <QList>
#include <QPoint>
#include <QRect>

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

} // namespace tidewell
