#include "ui/detail/DiagnosticRow.h"

#include "ui/components/FittedText.h"
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

constexpr int edgePadding = 8;
constexpr int lineThickness = 1;
constexpr int leastGap = 16;

TextStyle labelStyle() { return {TWFont::body(), TWColor::textSecondary()}; }

TextStyle valueStyle(const QColor& color) {
  TextStyle style{TWFont::monoSmall(), color};
  style.alignment = Qt::AlignRight;
  style.elide = Qt::ElideMiddle;
  return style;
}

int contentHeight() { return std::max(lineHeight(labelStyle()), lineHeight(valueStyle({}))); }

} // namespace

DiagnosticRow::DiagnosticRow(QString label, QWidget* parent)
    : PaintedWidget(QAccessible::StaticText, parent), m_label(std::move(label)) {
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  setSpoken(m_label);
}

void DiagnosticRow::setValue(const QString& value, const QColor& color) {
  if (value == m_value && color == m_color) {
    return;
  }
  m_value = value;
  m_color = color;
  setSpoken(m_label + u' ' + spokenValue(value));
  updateToolTip();
  update();
}

QSize DiagnosticRow::sizeHint() const {
  return {0, contentHeight() + 2 * edgePadding + lineThickness};
}

QRect DiagnosticRow::valueBox() const {
  const int left = static_cast<int>(std::ceil(lineWidth(m_label, labelStyle()))) + leastGap;
  // One baseline for both.
  const int top = edgePadding + QFontMetrics(labelStyle().font).ascent() -
                  QFontMetrics(valueStyle({}).font).ascent();
  return {left, top, std::max(0, width() - left), contentHeight()};
}

void DiagnosticRow::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(QRect(0, height() - lineThickness, width(), lineThickness),
                   TWColor::borderSubtle());
  drawLine(painter, rect().adjusted(0, edgePadding, 0, 0), m_label, labelStyle());
  drawLine(painter, valueBox(), m_value, valueStyle(m_color));
}

void DiagnosticRow::resizeEvent(QResizeEvent* /*event*/) { updateToolTip(); }

void DiagnosticRow::updateToolTip() {
  const bool isCut = FittedText(m_value, valueStyle({}), valueBox().width()).isCut;
  setToolTip(isCut ? toolTipText(m_value) : QString());
}

} // namespace tidewell
