#include "ui/components/Painting.h"

#include "ui/tokens/TWColor.h"

#include <algorithm>
#include <cmath>

namespace tidewell {
namespace {

constexpr double ringWidth = 1.5;

bool isWhole(double position) { return position == std::round(position); }

} // namespace

double DevicePixels::x(double position) const {
  const double scale = m_toDevice.m11();
  return (std::round(position * scale + m_toDevice.dx()) - m_toDevice.dx()) / scale;
}

double DevicePixels::y(double position) const {
  const double scale = m_toDevice.m22();
  return (std::round(position * scale + m_toDevice.dy()) - m_toDevice.dy()) / scale;
}

double DevicePixels::thickness(int pixels) const {
  const double scale = m_toDevice.m11();
  return std::max(1.0, std::floor(pixels * scale)) / scale;
}

QRectF DevicePixels::rect(const QRectF& rect) const {
  const auto onX = [this](double edge) { return isWhole(edge) ? x(edge) : edge; };
  const auto onY = [this](double edge) { return isWhole(edge) ? y(edge) : edge; };
  return {QPointF(onX(rect.left()), onY(rect.top())),
          QPointF(onX(rect.right()), onY(rect.bottom()))};
}

void fillLine(QPainter& painter, const QRectF& line, const QColor& color) {
  const DevicePixels grid(painter);
  const QPointF start(grid.x(line.left()), grid.y(line.top()));
  const QSizeF size = line.width() < line.height()
                          ? QSizeF(grid.thickness(static_cast<int>(line.width())),
                                   grid.y(line.bottom()) - start.y())
                          : QSizeF(grid.x(line.right()) - start.x(),
                                   grid.thickness(static_cast<int>(line.height())));
  painter.fillRect(QRectF(start, size), color);
}

void drawFrame(QPainter& painter, const QRectF& rect, double radius, const QColor& outline,
               const QColor& inside) {
  const DevicePixels grid(painter);
  const double width = grid.thickness(1);
  const QRectF outer = grid.rect(rect);
  painter.setPen(QPen(outline, width));
  painter.setBrush(inside);
  const double inset = width / 2.0;
  painter.drawRoundedRect(outer.adjusted(inset, inset, -inset, -inset), radius - inset,
                          radius - inset);
}

void fillRounded(QPainter& painter, const QRectF& rect, double radius, const QBrush& brush) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(brush);
  painter.drawRoundedRect(DevicePixels(painter).rect(rect), radius, radius);
}

void fillDisc(QPainter& painter, QPointF centre, double radius, const QBrush& brush) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(brush);
  painter.drawEllipse(centre, radius, radius);
}

QPalette popupPalette() {
  QPalette palette;
  palette.setColor(QPalette::Window, TWColor::surface2);
  palette.setColor(QPalette::Base, TWColor::surface2);
  palette.setColor(QPalette::Text, TWColor::text);
  palette.setColor(QPalette::WindowText, TWColor::text);
  palette.setColor(QPalette::Highlight, TWColor::accentDim);
  palette.setColor(QPalette::HighlightedText, TWColor::text);
  return palette;
}

void drawFocusRing(QPainter& painter, const QRectF& rect, double radius) {
  constexpr double inset = ringWidth / 2.0;
  painter.setPen(QPen(TWColor::accent, ringWidth));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(rect.adjusted(inset, inset, -inset, -inset), radius - inset,
                          radius - inset);
}

} // namespace tidewell
