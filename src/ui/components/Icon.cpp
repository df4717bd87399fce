#include "ui/components/Icon.h"

#include <QPainterPath>
#include <QPainterPathStroker>
#include <QPolygonF>
#include <QTransform>

#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace tidewell {
namespace {

// Outlines to fill, each in a square of `iconEdge` by `iconEdge`.

// The outline of the path's stroke with a round pen.
QPainterPath penned(const QPainterPath& path, double width) {
  QPainterPathStroker stroker;
  stroker.setWidth(width);
  stroker.setCapStyle(Qt::RoundCap);
  stroker.setJoinStyle(Qt::RoundJoin);
  return stroker.createStroke(path);
}

QPainterPath bolt() {
  QPainterPath path;
  path.addPolygon({{6.9, 0.4}, {2.1, 6.2}, {5.1, 6.2}, {4.1, 10.6}, {8.9, 4.6}, {5.8, 4.6}});
  path.closeSubpath();
  // A thin stroke rounds the corners.
  QPainterPath rounded = path.united(penned(path, 0.6));
  rounded.setFillRule(Qt::WindingFill);
  return rounded;
}

// The right half mirrors the left one.
QPainterPath glass() {
  QPainterPath path({2.5, 1.0});
  path.cubicTo({2.5, 3.6}, {4.7, 4.2}, {4.7, 5.5});
  path.cubicTo({4.7, 6.8}, {2.5, 7.4}, {2.5, 10.0});
  path.moveTo(8.5, 1.0);
  path.cubicTo({8.5, 3.6}, {6.3, 4.2}, {6.3, 5.5});
  path.cubicTo({6.3, 6.8}, {8.5, 7.4}, {8.5, 10.0});
  return path;
}

QPainterPath sand() {
  QPainterPath path({5.5, 6.6});
  path.cubicTo({6.0, 7.8}, {7.4, 8.2}, {7.6, 9.6});
  path.lineTo(3.4, 9.6);
  path.cubicTo({3.6, 8.2}, {5.0, 7.8}, {5.5, 6.6});
  return path;
}

QPainterPath hourglass() {
  QPainterPath path;
  path.setFillRule(Qt::WindingFill);
  path.addRoundedRect(QRectF(1.0, 0.0, 9.0, 1.2), 0.6, 0.6);
  path.addRoundedRect(QRectF(1.0, 9.8, 9.0, 1.2), 0.6, 0.6);
  path.addPath(penned(glass(), 1.0));
  path.addPath(sand());
  return path;
}

constexpr double sheetPen = 1.0;

// The visible part of the sheet behind.
QPainterPath sheetBehind() {
  QPainterPath path({2.5, 7.5});
  path.lineTo(1.8, 7.5);
  path.quadTo(0.5, 7.5, 0.5, 6.2);
  path.lineTo(0.5, 1.8);
  path.quadTo(0.5, 0.5, 1.8, 0.5);
  path.lineTo(6.2, 0.5);
  path.quadTo(7.5, 0.5, 7.5, 1.8);
  path.lineTo(7.5, 2.5);
  return path;
}

QPainterPath copy() {
  QPainterPath sheetInFront;
  sheetInFront.addRoundedRect(QRectF(3.5, 3.5, 7.0, 7.0), 1.3, 1.3);
  QPainterPath path;
  path.setFillRule(Qt::WindingFill);
  path.addPath(penned(sheetInFront, sheetPen));
  path.addPath(penned(sheetBehind(), sheetPen));
  return path;
}

QPainterPath checkMark() {
  QPainterPath path({1.4, 6.0});
  path.lineTo(4.2, 8.9);
  path.lineTo(9.6, 2.2);
  return penned(path, 1.5);
}

QPainterPath barChart() {
  QPainterPath path;
  path.addRoundedRect(QRectF(0.0, 6.0, 3.0, 5.0), 0.8, 0.8);
  path.addRoundedRect(QRectF(4.0, 3.0, 3.0, 8.0), 0.8, 0.8);
  path.addRoundedRect(QRectF(8.0, 0.0, 3.0, 11.0), 0.8, 0.8);
  return path;
}

constexpr int teeth = 8;
constexpr double rootRadius = 4.0;
constexpr double tipRadius = 5.4;
constexpr double holeRadius = 1.9;

struct GearCorner {
  double degrees;
  double radius;
};
// One tooth, relative to its middle.
constexpr std::array<GearCorner, 4> tooth = {
    {{-13.0, rootRadius}, {-9.0, tipRadius}, {9.0, tipRadius}, {13.0, rootRadius}}};

QPointF onCircle(QPointF centre, double degrees, double radius) {
  const double angle = degrees * std::numbers::pi / 180.0;
  return centre + QPointF(std::cos(angle), std::sin(angle)) * radius;
}

QPainterPath gear() {
  const QPointF centre(5.5, 5.5);
  QPolygonF outline;
  for (int index = 0; index < teeth; ++index) {
    for (const auto& [degrees, radius] : tooth) {
      outline << onCircle(centre, 360.0 / teeth * index + degrees, radius);
    }
  }
  QPainterPath path;
  path.setFillRule(Qt::OddEvenFill);
  path.addPolygon(outline);
  path.closeSubpath();
  path.addEllipse(centre, holeRadius, holeRadius);
  return path;
}

QPainterPath power() {
  // A ring with a gap of 80 degrees at the top for the stroke.
  QPainterPath path;
  const QRectF ring(1.2, 1.7, 8.6, 8.6);
  path.arcMoveTo(ring, 130.0);
  path.arcTo(ring, 130.0, 280.0);
  path.moveTo(5.5, 0.8);
  path.lineTo(5.5, 5.2);
  QPainterPath shape = penned(path, 1.3);
  shape.setFillRule(Qt::WindingFill);
  return shape;
}

QPainterPath bell() {
  QPainterPath path({5.5, 0.2});
  path.cubicTo({6.1, 0.2}, {6.5, 0.6}, {6.5, 1.2});
  path.cubicTo({8.3, 1.7}, {9.0, 3.2}, {9.0, 5.0});
  path.cubicTo({9.0, 6.9}, {9.5, 7.4}, {10.2, 8.1});
  path.quadTo(10.5, 8.9, 9.7, 8.9);
  path.lineTo(1.3, 8.9);
  path.quadTo(0.5, 8.9, 0.8, 8.1);
  path.cubicTo({1.5, 7.4}, {2.0, 6.9}, {2.0, 5.0});
  path.cubicTo({2.0, 3.2}, {2.7, 1.7}, {4.5, 1.2});
  path.cubicTo({4.5, 0.6}, {4.9, 0.2}, {5.5, 0.2});
  path.closeSubpath();
  // The clapper.
  path.moveTo(3.9, 9.6);
  path.lineTo(7.1, 9.6);
  path.cubicTo({6.9, 10.4}, {6.3, 10.9}, {5.5, 10.9});
  path.cubicTo({4.7, 10.9}, {4.1, 10.4}, {3.9, 9.6});
  path.closeSubpath();
  return path;
}

QPainterPath drive() {
  QPainterPath path;
  path.setFillRule(Qt::OddEvenFill);
  // The lid, seen from above.
  path.moveTo(2.6, 1.6);
  path.lineTo(8.4, 1.6);
  path.lineTo(10.6, 5.4);
  path.lineTo(0.4, 5.4);
  path.closeSubpath();
  // The front, with its light.
  path.addRoundedRect(QRectF(0.2, 6.0, 10.6, 3.6), 1.0, 1.0);
  path.addEllipse(QPointF(8.6, 7.8), 0.7, 0.7);
  return path;
}

constexpr double linkPen = 1.3;

// One link of the chain, open where the other passes through.
QPainterPath halfLink() {
  QPainterPath path({5.1, 3.6});
  path.lineTo(2.9, 3.6);
  path.cubicTo({-0.1, 3.6}, {-0.1, 7.4}, {2.9, 7.4});
  path.lineTo(5.1, 7.4);
  return path;
}

QPainterPath link() {
  QPainterPath chain = halfLink();
  const QTransform mirrored(-1.0, 0.0, 0.0, 1.0, 11.0, 0.0);
  chain.addPath(mirrored.map(halfLink()));
  chain.moveTo(3.6, 5.5);
  chain.lineTo(7.4, 5.5);
  QTransform slanted;
  slanted.translate(5.5, 5.5).rotate(-45.0).translate(-5.5, -5.5);
  QPainterPath shape = penned(slanted.map(chain), linkPen);
  shape.setFillRule(Qt::WindingFill);
  return shape;
}

const QPainterPath& shapeOf(Icon icon) {
  // In the order of the enumeration.
  static const std::array<QPainterPath, 10> shapes = {bolt(),     hourglass(), copy(),  checkMark(),
                                                      barChart(), gear(),      power(), bell(),
                                                      drive(),    link()};
  return shapes.at(static_cast<std::size_t>(icon));
}

} // namespace

void drawIcon(QPainter& painter, Icon icon, QPointF topLeft, const QColor& color) {
  painter.save();
  painter.translate(topLeft);
  painter.fillPath(shapeOf(icon), color);
  painter.restore();
}

} // namespace tidewell
