#include "ui/components/icons/IconShapes.h"

#include <QPolygonF>

#include <array>
#include <cmath>
#include <numbers>

namespace tidewell {

namespace {

constexpr int teeth = 8;
constexpr double rootRadius = 4.0;
constexpr double tipRadius = 5.4;
constexpr double holeRadius = 1.9;

struct Corner {
  double degrees;
  double radius;
};
// One tooth, from its middle.
constexpr std::array<Corner, 4> tooth = {
    {{-13.0, rootRadius}, {-9.0, tipRadius}, {9.0, tipRadius}, {13.0, rootRadius}}};

QPointF onCircle(QPointF centre, double degrees, double radius) {
  const double angle = degrees * std::numbers::pi / 180.0;
  return centre + QPointF(std::cos(angle), std::sin(angle)) * radius;
}

} // namespace

QPainterPath iconShapes::gear() {
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

} // namespace tidewell
