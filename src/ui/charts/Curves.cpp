#include "ui/charts/Curves.h"

#include "ui/charts/ValueAxis.h"
#include "ui/components/Painting.h"
#include "ui/tokens/TWColor.h"

#include <QLineF>
#include <QLinearGradient>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace tidewell {
namespace {

constexpr int segmentsAtOnce = 10;
// A whole number of device pixels at every common scale, including quarters.
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

// Half a pixel, so that nothing is lost at twice the scale.
constexpr double columnsPerPixel = 2.0;
constexpr qsizetype pointsPerColumn = 4;

/// Keeps of each column of pixels what can be seen: the first, lowest, highest and last point.
QPolygonF thinned(const QPolygonF& curve) {
  const auto columnOf = [](const QPointF& point) {
    return std::floor(point.x() * columnsPerPixel);
  };
  const double columns = columnOf(curve.last()) - columnOf(curve.first()) + 1.0;
  if (static_cast<double>(curve.size()) <= columns * pointsPerColumn) {
    return curve;
  }
  QPolygonF kept;
  for (auto begin = curve.begin(); begin != curve.end();) {
    const auto isElsewhere = [&](const QPointF& point) {
      return columnOf(point) != columnOf(*begin);
    };
    const auto end = std::find_if(begin, curve.end(), isElsewhere);
    const auto byHeight = [](const QPointF& one, const QPointF& other) {
      return one.y() < other.y();
    };
    auto [lowest, highest] = std::minmax_element(begin, end, byHeight);
    const auto [former, latter] = std::minmax(lowest, highest);
    kept << *begin << *former << *latter << *std::prev(end);
    begin = end;
  }
  return kept;
}

// Labels of larger values would not fit. Measured values are far smaller.
constexpr double farthest = 1e15;

} // namespace

void drawCurve(QPainter& painter, const QPolygonF& curve, QPen pen) {
  const bool isDashed = pen.style() != Qt::SolidLine;
  // Round caps close the gaps between pieces, but would lengthen dashes.
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

QBrush fadeBetween(double top, double bottom, const QColor& color) {
  QLinearGradient fade(0.0, top, 0.0, bottom);
  fade.setColorAt(0.0, color);
  fade.setColorAt(1.0, withOpacity(color, 0.0));
  return fade;
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

ChartCurve::ChartCurve(const std::vector<double>& values, const ValueAxis& axis, const QRectF& plot)
    : m_plot(plot) {
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
  for (QPolygonF& piece : m_pieces) {
    piece = thinned(piece);
  }
}

void ChartCurve::draw(QPainter& painter, const QColor& color, double width) const {
  for (const QPolygonF& piece : m_pieces) {
    if (piece.size() == 1) {
      const double radius = 1.5 * width;
      const double x =
          std::max(m_plot.left() + radius, std::min(piece.first().x(), m_plot.right() - radius));
      fillDisc(painter, {x, piece.first().y()}, radius, color);
    } else {
      drawCurve(painter, piece, QPen(color, width, Qt::SolidLine, Qt::FlatCap, Qt::BevelJoin));
    }
  }
}

void ChartCurve::fill(QPainter& painter, const QColor& color) const {
  double top = m_plot.bottom();
  for (const QPolygonF& piece : m_pieces) {
    top = std::min(top, piece.boundingRect().top());
  }
  for (const QPolygonF& piece : m_pieces) {
    fillBelow(painter, piece, m_plot.bottom(), fadeBetween(top, m_plot.bottom(), color));
  }
}

double megabits(std::int64_t bytesPerSec) {
  return static_cast<double>(bytesPerSec) * 8.0 / 1'000'000.0;
}

double topOfScale(const SnapshotList& snapshots) {
  std::int64_t largest = 0;
  for (const auto& snapshot : snapshots) {
    largest = std::max({largest, snapshot->downloadBytesPerSec(), snapshot->uploadBytesPerSec()});
  }
  return megabits(largest);
}

GraphCurves::GraphCurves(const SnapshotList& snapshots, const QRectF& plot) {
  const double perMegabit = plot.height() / std::max(topOfScale(snapshots), leastMegabits);
  const auto gaps = static_cast<double>(snapshots.size()) - 1.0;
  const double step = gaps > 0.0 ? plot.width() / gaps : 0.0;
  const auto heightOf = [&](std::int64_t rate) {
    return plot.bottom() - std::max(megabits(rate), 0.0) * perMegabit;
  };
  double x = plot.left();
  for (const auto& snapshot : snapshots) {
    download << QPointF(x, heightOf(snapshot->downloadBytesPerSec()));
    upload << QPointF(x, heightOf(snapshot->uploadBytesPerSec()));
    x += step;
  }
  if (!snapshots.empty()) {
    download = thinned(download);
    upload = thinned(upload);
  }
}

} // namespace tidewell
