#include "ui/components/TextLine.h"

#include "ui/components/ShownText.h"

#include <cmath>
#include <utility>

namespace tidewell {

TextLine::TextLine(TextStyle style, QWidget* parent, QAccessible::Role role)
    : PaintedWidget(role, parent), m_style(std::move(style)) {
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void TextLine::setText(const QString& text, const QString& spoken) {
  setSpoken(spoken.isEmpty() ? text : spoken);
  if (text == m_text) {
    return;
  }
  m_text = text;
  updateToolTip();
  update();
}

QSize TextLine::sizeHint() const {
  return {static_cast<int>(std::ceil(lineWidth(m_text, m_style))), lineHeight(m_style)};
}

void TextLine::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  drawLine(painter, rect(), m_text, m_style);
}

void TextLine::resizeEvent(QResizeEvent* /*event*/) { updateToolTip(); }

void TextLine::updateToolTip() {
  const bool isCut = FittedText(m_text, m_style, width()).isCut;
  setToolTip(isCut ? toolTipText(m_text) : QString());
}

} // namespace tidewell
