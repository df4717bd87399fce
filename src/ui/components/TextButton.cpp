#include "ui/components/TextButton.h"

#include "ui/components/FittedText.h"
#include "ui/components/FocusRing.h"
#include "ui/tokens/TWColor.h"
#include "ui/tokens/TWFont.h"

#include <QKeyEvent>
#include <QPainter>

#include <cmath>

namespace tidewell {

namespace {

constexpr int sidePadding = 14;
constexpr int edgePadding = 6;
constexpr double radius = 6.0;
constexpr int hoverLightness = 115; // percent
constexpr int pressedLightness = 85;

TextStyle textStyle() {
  static const QFont font = TWFont::standard(12, QFont::Medium);
  TextStyle style{font, TWColor::accent()};
  style.alignment = Qt::AlignHCenter;
  return style;
}

} // namespace

TextButton::TextButton(const QString& text, QWidget* parent) : QPushButton(text, parent) {
  setFocusPolicy(Qt::TabFocus);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  setAttribute(Qt::WA_Hover);
}

QSize TextButton::sizeHint() const {
  const int textWidth = static_cast<int>(std::ceil(lineWidth(text(), textStyle())));
  return {textWidth + 2 * sidePadding, lineHeight(textStyle()) + 2 * edgePadding};
}

void TextButton::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  QColor ground = TWColor::accentDim();
  if (isDown()) {
    ground = ground.lighter(pressedLightness);
  } else if (underMouse()) {
    ground = ground.lighter(hoverLightness);
  }
  painter.setPen(Qt::NoPen);
  painter.setBrush(ground);
  painter.drawRoundedRect(rect(), radius, radius);
  drawLine(painter, rect().adjusted(0, edgePadding, 0, -edgePadding), text(), textStyle());
  if (hasFocus()) {
    drawFocusRing(painter, rect(), radius);
  }
}

void TextButton::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    click();
    return;
  }
  QPushButton::keyPressEvent(event);
}

} // namespace tidewell
