#include "ui/components/PanelRow.h"

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

constexpr int edgePadding = 6;
constexpr int leastGap = 16;

TextStyle keyStyle() { return {TWFont::body(), TWColor::textSecondary()}; }

TextStyle valueStyle() {
  TextStyle style{TWFont::monoSmall(), TWColor::text()};
  style.alignment = Qt::AlignRight;
  style.elide = Qt::ElideMiddle;
  return style;
}

int contentHeight() { return std::max(lineHeight(keyStyle()), lineHeight(valueStyle())); }

} // namespace

PanelRow::PanelRow(QString key, QWidget* parent)
    : PaintedWidget(QAccessible::StaticText, parent), m_key(std::move(key)) {
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  setSpoken(m_key);
}

void PanelRow::setValue(const QString& value) {
  if (value == m_value) {
    return;
  }
  m_value = value;
  setSpoken(m_key + u' ' + spokenValue(value));
  updateToolTip();
  update();
}

QSize PanelRow::sizeHint() const { return {0, contentHeight() + 2 * edgePadding}; }

QRect PanelRow::valueBox() const {
  const int left = static_cast<int>(std::ceil(lineWidth(m_key, keyStyle()))) + leastGap;
  // One baseline for both.
  const int top = edgePadding + QFontMetrics(keyStyle().font).ascent() -
                  QFontMetrics(valueStyle().font).ascent();
  return {left, top, std::max(0, width() - left), contentHeight()};
}

void PanelRow::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  drawLine(painter, rect().adjusted(0, edgePadding, 0, -edgePadding), m_key, keyStyle());
  drawLine(painter, valueBox(), m_value, valueStyle());
}

void PanelRow::resizeEvent(QResizeEvent* /*event*/) { updateToolTip(); }

void PanelRow::updateToolTip() {
  const bool isCut = FittedText(m_value, valueStyle(), valueBox().width()).isCut;
  setToolTip(isCut ? toolTipText(m_value) : QString());
}

} // namespace tidewell
