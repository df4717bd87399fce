#include "ui/settings/UnsavedNotice.h"

#include "ui/components/FittedText.h"
#include "ui/components/Painting.h"
#include "ui/components/ShownText.h"
#include "ui/tokens/TWColor.h"
#include "ui/tokens/TWFont.h"

namespace tidewell {
namespace {

constexpr int margin = 8;
constexpr int sidePadding = 10;
constexpr int edgePadding = 5;
constexpr int radius = 6;

TextStyle textStyle() { return {TWFont::caption(), TWColor::red}; }

} // namespace

UnsavedNotice::UnsavedNotice(QWidget* parent) : PaintedWidget(QAccessible::AlertMessage, parent) {
  hide();
}

void UnsavedNotice::setReason(const QString& reason) {
  if (!reason.isEmpty()) {
    m_text = translatedText("Not saved: %1. Trying again.").arg(reason);
    setSpoken(m_text);
    contentChanged();
  }
  setVisible(!reason.isEmpty());
}

QSize UnsavedNotice::sizeHint() const {
  return {0, lineHeight(textStyle()) + 2 * (margin + edgePadding)};
}

QRect UnsavedNotice::textBox() const {
  constexpr int beside = margin + sidePadding;
  constexpr int above = margin + edgePadding;
  return rect().adjusted(beside, above, -beside, -above);
}

void UnsavedNotice::paintEvent(QPaintEvent* /*event*/) {
  SmoothPainter painter(this);
  fillRounded(painter, rect().adjusted(margin, margin, -margin, -margin), radius, TWColor::redDim);
  drawLine(painter, textBox(), m_text, textStyle());
}

QString UnsavedNotice::cutText() const { return ifCut(m_text, textStyle(), textBox().width()); }

} // namespace tidewell
