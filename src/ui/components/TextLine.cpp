#include "ui/components/TextLine.h"

#include <cmath>
#include <utility>

namespace tidewell {

TextLine::TextLine(TextStyle style, QWidget* parent, QAccessible::Role role)
    : PaintedWidget(role, parent), m_style(std::move(style)) {}

void TextLine::setText(const QString& text, const QString& spoken) {
  setSpoken(spoken.isEmpty() ? text : spoken);
  if (text == m_text) {
    return;
  }
  m_text = text;
  contentChanged();
}

QSize TextLine::sizeHint() const {
  return {static_cast<int>(std::ceil(lineWidth(m_text, m_style))), lineHeight(m_style)};
}

void TextLine::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  drawLine(painter, rect(), m_text, m_style);
}

QString TextLine::cutText() const { return ifCut(m_text, m_style, width()); }

} // namespace tidewell
