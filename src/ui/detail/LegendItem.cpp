#include "ui/detail/LegendItem.h"

#include "ui/components/FittedText.h"
#include "ui/tokens/TWColor.h"
#include "ui/tokens/TWFont.h"

#include <QPainter>

#include <cmath>
#include <utility>

namespace tidewell {

namespace {

constexpr int swatchWidth = 16;
constexpr int swatchHeight = 3;
constexpr double swatchRadius = 2.0;
constexpr int spacing = 6;

TextStyle textStyle() {
  static const QFont font = TWFont::standard(12, QFont::Normal);
  return {font, TWColor::textSecondary()};
}

} // namespace

LegendItem::LegendItem(QString label, QColor color, QWidget* parent)
    : PaintedWidget(QAccessible::StaticText, parent), m_label(std::move(label)), m_color(color) {
  const int textWidth = static_cast<int>(std::ceil(lineWidth(m_label, textStyle())));
  setFixedSize(swatchWidth + spacing + textWidth, lineHeight(textStyle()));
  setSpoken(m_label);
}

void LegendItem::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(m_color);
  const int top = (height() - swatchHeight) / 2;
  painter.drawRoundedRect(QRectF(0.0, top, swatchWidth, swatchHeight), swatchRadius, swatchRadius);
  drawLine(painter, rect().adjusted(swatchWidth + spacing, 0, 0, 0), m_label, textStyle());
}

} // namespace tidewell
