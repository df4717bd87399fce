#include "ui/detail/ChartCurve.h"

#include "ui/detail/ValueAxis.h"
#include "ui/panel/CurvePainting.h"

#include <QPen>

#include <algorithm>
#include <cmath>

namespace tidewell {

namespace {

// Beyond, labels would not fit. Nothing that is measured comes near it.
constexpr double farthest = 1e15;

} // namespace

bool ChartCurve::isDrawable(double value) { return std::abs(value) <= farthest; }

double ChartCurve::largest(const std::vector<double>& values) {
  double result = 0.0;
  for (const double value : values) {
    if (isDrawable(value)) {
      result = std::max(result, value);
    }
  }
  return result;
}

ChartCurve::ChartCurve(const std::vector<double>& values, const ValueAxis& axis,
                       const QRectF& plot) {
  const double gaps = static_cast<double>(values.size()) - 1.0;
  const double step = gaps > 0.0 ? plot.width() / gaps : 0.0;
  bool isInterrupted = true;
  double index = 0.0;
  for (const double value : values) {
    if (isDrawable(value)) {
      if (isInterrupted) {
        m_pieces.emplace_back();
      }
      m_pieces.back() << QPointF(plot.left() + index * step, axis.yOf(value, plot));
    }
    isInterrupted = !isDrawable(value);
    index += 1.0;
  }
}

void ChartCurve::draw(QPainter& painter, const QColor& color, double width) const {
  for (const QPolygonF& piece : m_pieces) {
    if (piece.size() == 1) {
      painter.setPen(Qt::NoPen);
      painter.setBrush(color);
      painter.drawEllipse(piece.first(), 1.5 * width, 1.5 * width);
    } else {
      drawCurve(painter, piece, QPen(color, width, Qt::SolidLine, Qt::FlatCap, Qt::BevelJoin));
    }
  }
}

void ChartCurve::fill(QPainter& painter, const QBrush& brush, const QRectF& plot) const {
  for (const QPolygonF& piece : m_pieces) {
    fillBelow(painter, piece, plot.bottom(), brush);
  }
}

} // namespace tidewell
