#include "ui/charts/ChartReading.h"

#include "ui/components/FittedText.h"
#include "ui/components/Painting.h"
#include "ui/tokens/TWColor.h"
#include "ui/tokens/TWFont.h"

#include <algorithm>
#include <cmath>

namespace tidewell {
namespace {

// In pixels.
constexpr double lineGap = 6.0;
constexpr double topGap = 2.0;
constexpr double sidePadding = 6.0;
constexpr double edgePadding = 2.0;
constexpr double partGap = 8.0;
constexpr double radius = 4.0;

// Keeps the text readable over the curves.
constexpr double groundOpacity = 0.85;

TextStyle styleOf(const ReadingPart& part) { return {TWFont::monoTiny(), part.color}; }

double widthOf(const std::vector<ReadingPart>& parts) {
  double width = partGap * (static_cast<double>(parts.size()) - 1.0);
  for (const ReadingPart& part : parts) {
    width += std::ceil(lineWidth(part.text, styleOf(part)));
  }
  return width;
}

/// One pixel, or as many whole device pixels as fit into it, but at least one.
QRectF lineAt(double x, const QRectF& plot, const QTransform& toDevice) {
  const QRectF area = toDevice.mapRect(plot);
  const double width = std::max(1.0, std::floor(toDevice.m11()));
  const double wanted = std::round(toDevice.map(QPointF(x, 0.0)).x());
  const double left =
      std::max(std::ceil(area.left()), std::min(wanted, std::floor(area.right()) - width));
  return toDevice.inverted().mapRect(QRectF(left, area.top(), width, area.height()));
}

/// Right of the line, or left of it if there is more room.
QRectF boxFor(double x, double width, const QRectF& plot) {
  const bool fitsRight = x + lineGap + width <= plot.right();
  const double left = fitsRight ? x + lineGap : x - lineGap - width;
  const double height = lineHeight(styleOf({})) + 2.0 * edgePadding;
  return {std::max(plot.left(), left), plot.top() + topGap, std::min(width, plot.width()), height};
}

} // namespace

void ChartReading::draw(QPainter& painter, const QRectF& plot) const {
  if (plot.width() < 1.0) {
    return;
  }
  painter.save();
  painter.setClipRect(plot, Qt::IntersectClip);
  painter.fillRect(lineAt(x, plot, painter.deviceTransform()), TWColor::textTertiary);
  const QRectF box = boxFor(x, widthOf(parts) + 2.0 * sidePadding, plot);
  fillRounded(painter, box, radius, withOpacity(TWColor::surface, groundOpacity));
  double left = box.left() + sidePadding;
  for (const ReadingPart& part : parts) {
    const double room = std::max(0.0, box.right() - sidePadding - left);
    drawLine(painter, QRectF(left, box.top() + edgePadding, room, box.height()), part.text,
             styleOf(part));
    left += std::ceil(lineWidth(part.text, styleOf(part))) + partGap;
  }
  painter.restore();
}

} // namespace tidewell
