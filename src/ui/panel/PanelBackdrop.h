#pragma once

class QPainter;
class QRect;

namespace tidewell {

/// What lies behind the panel.
enum class Backdrop {
  /// Lightly translucent, with round corners. The window has to have an alpha channel.
  translucent,
  /// Opaque, with square corners: where nothing composes windows.
  opaque
};

/// Radius of a translucent panel's corners, in pixels.
constexpr int panelRadius = 12;

/// Paints the ground of a panel and its outline.
void paintBackdrop(QPainter& painter, const QRect& panel, Backdrop backdrop);

} // namespace tidewell
