#pragma once

#include <QPainter>
#include <QPalette>
#include <QRectF>

namespace tidewell {

/// A painter that antialiases.
class SmoothPainter final : public QPainter {
public:
  explicit SmoothPainter(QPaintDevice* device) : QPainter(device) {
    setRenderHint(QPainter::Antialiasing);
  }
};

/// The grid of a painter's device pixels. At fractional scales of the screen, lines on it are as
/// thick and as sharp as their neighbours.
class DevicePixels {
public:
  explicit DevicePixels(const QPainter& painter) : m_toDevice(painter.deviceTransform()) {}

  /// The edge between device pixels that is nearest to a position.
  [[nodiscard]] double x(double position) const;
  [[nodiscard]] double y(double position) const;

  /// As many whole device pixels as fit into this thickness; at least one.
  [[nodiscard]] double thickness(int pixels) const;

  /// The rectangle with its edges on device pixels. Edges at a fraction of a pixel stay there.
  [[nodiscard]] QRectF rect(const QRectF& rect) const;

private:
  QTransform m_toDevice;
};

/// Fills a horizontal or vertical line on device pixels.
void fillLine(QPainter& painter, const QRectF& line, const QColor& color);

/// Draws an outline of one pixel along the inside of a rounded rectangle, on device pixels, and
/// fills the rest. Expects an antialiasing painter.
void drawFrame(QPainter& painter, const QRectF& rect, double radius, const QColor& outline,
               const QColor& inside);

/// Fills a rounded rectangle on device pixels, without an outline. Expects an antialiasing painter.
void fillRounded(QPainter& painter, const QRectF& rect, double radius, const QBrush& brush);

/// Fills a disc, without an outline. Expects an antialiasing painter.
void fillDisc(QPainter& painter, QPointF centre, double radius, const QBrush& brush);

/// The colours of lists and menus that open over a window.
[[nodiscard]] QPalette popupPalette();

/// Draws the keyboard focus along the inside of a rectangle. Expects an antialiasing painter.
void drawFocusRing(QPainter& painter, const QRectF& rect, double radius);

} // namespace tidewell
