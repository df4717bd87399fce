#include "ui/detail/AxisChart.h"

#include "ui/components/FittedText.h"
#include "ui/tokens/TWColor.h"
#include "ui/tokens/TWFont.h"

#include <QFontMetrics>
#include <QPainter>

#include <cmath>
#include <utility>

namespace tidewell {

namespace {

constexpr int labelSpacing = 8;
constexpr int labelWidth = 62;

TextStyle labelStyle() { return {TWFont::monoTiny(), TWColor::textTertiary()}; }

} // namespace

AxisChart::AxisChart(int height, QString unit, QWidget* parent)
    : PaintedWidget(QAccessible::Chart, parent), m_height(height), m_unit(std::move(unit)),
      m_axis(1.0, 1.0) {
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

QRectF AxisChart::plot() const {
  // Half a label stands out above the uppermost grid line and below the lowest.
  const int edge = (lineHeight(labelStyle()) + 1) / 2;
  return QRectF(rect()).adjusted(0.0, edge, -(labelSpacing + labelWidth), -edge);
}

void AxisChart::setAxis(const ValueAxis& axis) { m_axis = axis; }

void AxisChart::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  paintGrid(painter);
  painter.setRenderHint(QPainter::Antialiasing);
  paintCurves(painter);
}

void AxisChart::paintGrid(QPainter& painter) const {
  const QRectF area = plot();
  const int half = QFontMetrics(labelStyle().font).ascent() / 2;
  for (const double tick : m_axis.ticks()) {
    const double y = std::round(m_axis.yOf(tick, area));
    painter.fillRect(QRectF(area.left(), y, area.width(), 1.0), TWColor::borderSubtle());
    const bool isTop = tick == m_axis.ticks().back();
    const QString text = m_axis.label(tick) + (isTop ? u' ' + m_unit : QString());
    drawLine(painter, QRectF(area.right() + labelSpacing, y - half - 1, labelWidth, 2.0 * half),
             text, labelStyle());
  }
}

} // namespace tidewell
