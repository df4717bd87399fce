#include "ui/components/ActionButton.h"

#include "ui/components/FittedText.h"
#include "ui/tokens/TWColor.h"
#include "ui/tokens/TWFont.h"

#include <QKeyEvent>
#include <QPainter>

namespace tidewell {

namespace {

constexpr int edgePadding = 10;
constexpr int spacing = 3;
constexpr double stateInset = 3.0;
constexpr double stateRadius = 6.0;
constexpr double focusWidth = 1.5;

TextStyle labelStyle() {
  static const QFont font = TWFont::standard(10, QFont::Medium);
  TextStyle style{font, TWColor::textSecondary()};
  style.alignment = Qt::AlignHCenter;
  return style;
}

} // namespace

ActionButton::ActionButton(Icon icon, const QString& label, QWidget* parent)
    : QPushButton(label, parent), m_icon(icon) {
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  setFocusPolicy(Qt::TabFocus); // not by a click, which would leave its mark
  setAttribute(Qt::WA_Hover);
}

void ActionButton::setFace(Icon icon, const QString& label) {
  if (icon == m_icon && label == text()) {
    return;
  }
  m_icon = icon;
  setText(label); // which is also its accessible name
  update();
}

QSize ActionButton::sizeHint() const {
  return {iconEdge, 2 * edgePadding + iconEdge + spacing + lineHeight(labelStyle())};
}

void ActionButton::paintState(QPainter& painter) const {
  const QRectF inside = QRectF(rect()).adjusted(stateInset, stateInset, -stateInset, -stateInset);
  if (isDown() || underMouse()) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(isDown() ? TWColor::surface3() : TWColor::surface2());
    painter.drawRoundedRect(inside, stateRadius, stateRadius);
  }
  if (hasFocus()) {
    painter.setPen(QPen(TWColor::accent(), focusWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(inside, stateRadius, stateRadius);
  }
}

void ActionButton::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  paintState(painter);
  const int left = (width() - iconEdge) / 2;
  drawIcon(painter, m_icon, QPointF(left, edgePadding), TWColor::textSecondary());
  const int labelTop = edgePadding + iconEdge + spacing;
  drawLine(painter, rect().adjusted(0, labelTop, 0, 0), text(), labelStyle());
}

void ActionButton::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    click();
    return;
  }
  if (event->key() == Qt::Key_Left || event->key() == Qt::Key_Right) {
    focusNextPrevChild(event->key() == Qt::Key_Right);
    return;
  }
  QPushButton::keyPressEvent(event);
}

} // namespace tidewell
