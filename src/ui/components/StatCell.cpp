#include "ui/components/StatCell.h"

#include "ui/components/FittedText.h"
#include "ui/components/ShownText.h"
#include "ui/tokens/TWColor.h"
#include "ui/tokens/TWFont.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tidewell {
namespace {

constexpr int padding = 12;
constexpr int rowSpacing = 4;
constexpr int unitSpacing = 2;
constexpr double labelSpacing = 1.0;
constexpr int smallestValueSize = 10;
constexpr int smallestLabelSize = 9;

TextStyle labelStyle() {
  return {.font = withLetterSpacing(TWFont::label(), labelSpacing),
          .color = TWColor::textTertiary,
          .smallestPixelSize = smallestLabelSize};
}

TextStyle valueStyle(const QColor& color) {
  return {.font = TWFont::statValue(), .color = color, .smallestPixelSize = smallestValueSize};
}

TextStyle unitStyle() { return {TWFont::caption(), TWColor::textSecondary}; }

QString spokenFigure(const StatFigure& figure) {
  const QString value = spokenValue(figure.value);
  const bool hasUnit = !figure.unit.isEmpty() && value == figure.value;
  return figure.label + u' ' + value + (hasUnit ? u' ' + figure.unit : QString());
}

} // namespace

StatCell::StatCell(QWidget* parent) : PaintedWidget(QAccessible::StaticText, parent) {}

void StatCell::setFigure(const StatFigure& figure) {
  if (figure == m_figure) {
    return;
  }
  m_figure = figure;
  setSpoken(spokenFigure(figure));
  contentChanged();
}

QSize StatCell::sizeHint() const {
  const int height = lineHeight(labelStyle()) + rowSpacing + lineHeight(valueStyle({}));
  return {2 * padding, height + 2 * padding};
}

QRect StatCell::valueBox() const {
  const int unit = static_cast<int>(std::ceil(lineWidth(m_figure.unit, unitStyle())));
  const int top = padding + lineHeight(labelStyle()) + rowSpacing;
  return {padding, top, std::max(0, width() - 2 * padding - unitSpacing - unit),
          lineHeight(valueStyle({}))};
}

void StatCell::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  if (m_hasGround) {
    painter.fillRect(rect(), TWColor::surface2);
  }
  const QRect inside = rect().adjusted(padding, padding, -padding, -padding);
  drawLine(painter, inside, m_figure.label.toUpper(), labelStyle());

  const TextStyle style = valueStyle(m_figure.valueColor);
  const QRect box = valueBox();
  drawLine(painter, box, m_figure.value, style);

  const FittedText value(m_figure.value, style, box.width());
  const double valueWidth = QFontMetricsF(value.font).horizontalAdvance(value.text);
  const int baseline = box.top() + QFontMetrics(style.font).ascent();
  const double unitTop = baseline - QFontMetrics(unitStyle().font).ascent();
  const double unitLeft = box.left() + valueWidth + unitSpacing;
  drawLine(painter, QRectF(unitLeft, unitTop, inside.right() + 1 - unitLeft, box.height()),
           m_figure.unit, unitStyle());
}

QString StatCell::cutText() const {
  if (!ifCut(m_figure.label.toUpper(), labelStyle(), width() - 2 * padding).isEmpty()) {
    return accessibleName();
  }
  const bool isCut = !ifCut(m_figure.value, valueStyle({}), valueBox().width()).isEmpty();
  return isCut ? m_figure.value + u' ' + m_figure.unit : QString();
}

} // namespace tidewell
