#include "ui/detail/RangeButton.h"

#include "ui/components/FittedText.h"
#include "ui/components/FocusRing.h"
#include "ui/tokens/TWColor.h"
#include "ui/tokens/TWFont.h"

#include <QPainter>

#include <cmath>

namespace tidewell {

namespace {

constexpr int sidePadding = 10;
constexpr int edgePadding = 4;
constexpr double radius = 4.0;

TextStyle textStyle(bool isChosen) {
  static const QFont font = TWFont::standard(11, QFont::Medium);
  TextStyle style{font, isChosen ? TWColor::accent() : TWColor::textSecondary()};
  style.alignment = Qt::AlignHCenter;
  return style;
}

} // namespace

QSize RangeButton::sizeHint() const {
  const int textWidth = static_cast<int>(std::ceil(lineWidth(text(), textStyle(false))));
  return {textWidth + 2 * sidePadding, lineHeight(textStyle(false)) + 2 * edgePadding};
}

void RangeButton::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(isChecked()    ? TWColor::accentDim()
                   : underMouse() ? TWColor::surface3()
                                  : TWColor::surface2());
  painter.drawRoundedRect(rect(), radius, radius);
  drawLine(painter, rect().adjusted(0, edgePadding, 0, 0), text(), textStyle(isChecked()));
  if (hasFocus()) {
    drawFocusRing(painter, rect(), radius);
  }
}

} // namespace tidewell
