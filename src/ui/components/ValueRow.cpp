#include "ui/components/ValueRow.h"

#include "ui/components/FittedText.h"
#include "ui/components/Painting.h"
#include "ui/components/ShownText.h"
#include "ui/tokens/TWColor.h"
#include "ui/tokens/TWFont.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace tidewell {
namespace {

constexpr int leastGap = 16;
// An IPv6 address of 39 characters fits into the panel.
constexpr int smallestValueSize = 9;

TextStyle keyStyle() { return {TWFont::body(), TWColor::textSecondary}; }

TextStyle valueStyle(const QColor& color = {}) {
  return {.font = TWFont::monoSmall(),
          .color = color,
          .alignment = Qt::AlignRight,
          .smallestPixelSize = smallestValueSize,
          .elide = Qt::ElideMiddle};
}

int contentHeight() { return std::max(lineHeight(keyStyle()), lineHeight(valueStyle())); }

} // namespace

ValueRow::ValueRow(QString key, Frame frame, QWidget* parent)
    : PaintedWidget(QAccessible::StaticText, parent), m_key(std::move(key)), m_frame(frame) {
  setSpoken(m_key);
}

void ValueRow::setValue(const QString& value, const QColor& color, const QString& meaning) {
  if (value == m_value && color == m_color) {
    return;
  }
  m_value = value;
  m_color = color;
  setSpoken(m_key + u' ' + spokenValue(value) +
            (meaning.isEmpty() ? QString() : QStringLiteral(", ") + meaning));
  contentChanged();
}

QSize ValueRow::sizeHint() const {
  return {0, contentHeight() + 2 * m_frame.padding + m_frame.lineThickness};
}

QRect ValueRow::valueBox() const {
  const int left = static_cast<int>(std::ceil(lineWidth(m_key, keyStyle()))) + leastGap;
  // Puts both on one baseline.
  const int top = m_frame.padding + QFontMetrics(keyStyle().font).ascent() -
                  QFontMetrics(valueStyle().font).ascent();
  return {left, top, std::max(0, width() - left), contentHeight()};
}

void ValueRow::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  if (m_frame.lineThickness > 0) {
    fillLine(painter, QRect(0, height() - m_frame.lineThickness, width(), m_frame.lineThickness),
             TWColor::borderSubtle);
  }
  const QRect text =
      rect().adjusted(0, m_frame.padding, 0, -m_frame.padding - m_frame.lineThickness);
  drawLine(painter, text, m_key, keyStyle());
  if (hasFocus()) {
    paintSelection(painter);
  }
  drawLine(painter, valueBox(), m_value, valueStyle(m_color));
}

void ValueRow::paintSelection(QPainter& painter) const {
  const QRect box = valueBox();
  const FittedText shown(m_value, valueStyle(), box.width());
  TextStyle style = valueStyle();
  style.font = shown.font;
  const double start = box.right() + 1 - lineWidth(shown.text, style);
  const int left = std::max(box.left(), static_cast<int>(std::floor(start)));
  painter.fillRect(QRect(QPoint(left, box.top()), box.bottomRight()), TWColor::accentDim);
}

QString ValueRow::cutText() const {
  const QString key = ifCut(m_key, keyStyle(), width());
  return key.isEmpty() ? ifCut(m_value, valueStyle(), valueBox().width()) : accessibleName();
}

} // namespace tidewell
