#include "ui/panel/CurvePainting.h"

#include <QLineF>

#include <algorithm>
#include <cmath>

namespace tidewell {

namespace {

constexpr int segmentsAtOnce = 10;
// A whole number of pixels of the device at every usual scale, quarters included.
constexpr double stripWidth = 16.0;

double lengthOf(const QPointF* points, int segments) {
  double length = 0.0;
  for (int index = 0; index < segments; ++index) {
    length += QLineF(points[index], points[index + 1]).length();
  }
  return length;
}

double heightAt(const QPointF& left, const QPointF& right, double x) {
  const double share = (x - left.x()) / (right.x() - left.x());
  return left.y() + share * (right.y() - left.y());
}

} // namespace

void drawCurve(QPainter& painter, const QPolygonF& curve, QPen pen) {
  const bool isDashed = pen.style() != Qt::SolidLine;
  // Round ends close the joints between pieces; at a dash they would make it longer.
  pen.setCapStyle(isDashed ? Qt::FlatCap : Qt::RoundCap);
  const auto last = static_cast<int>(curve.size()) - 1;
  for (int begin = 0; begin < last; begin += segmentsAtOnce) {
    const int segments = std::min(segmentsAtOnce, last - begin);
    const QPointF* const points = curve.constData() + begin;
    painter.setPen(pen);
    painter.drawPolyline(points, segments + 1);
    if (isDashed) {
      pen.setDashOffset(pen.dashOffset() + lengthOf(points, segments) / pen.widthF());
    }
  }
}

void fillBelow(QPainter& painter, const QPolygonF& curve, double bottom, const QBrush& brush) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(brush);
  QPolygonF strip;
  const auto finish = [&] {
    strip << QPointF(strip.last().x(), bottom) << QPointF(strip.first().x(), bottom);
    painter.drawPolygon(strip);
  };
  strip << curve.first();
  int strips = static_cast<int>(std::floor(curve.first().x() / stripWidth)) + 1;
  for (qsizetype index = 1; index < curve.size(); ++index) {
    for (; strips * stripWidth < curve[index].x(); ++strips) {
      const double cut = strips * stripWidth;
      const QPointF edge(cut, heightAt(curve[index - 1], curve[index], cut));
      strip << edge;
      finish();
      strip = QPolygonF{edge};
    }
    strip << curve[index];
  }
  finish();
}

} // namespace tidewell
