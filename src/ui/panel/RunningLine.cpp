#include "ui/panel/RunningLine.h"

#include "ui/components/FittedText.h"
#include "ui/components/Spinner.h"
#include "ui/tokens/TWColor.h"
#include "ui/tokens/TWFont.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace tidewell {

namespace {

constexpr int edgePadding = 8;
constexpr int spacing = 8;

QString runningText() { return QStringLiteral("Running speed test..."); }

TextStyle textStyle() {
  static const QFont font = TWFont::standard(12, QFont::Normal);
  return {font, TWColor::textSecondary()};
}

} // namespace

RunningLine::RunningLine(const ViewTime& time, QWidget* parent)
    : PaintedWidget(QAccessible::StaticText, parent), m_spinner(new Spinner(time.now, this)) {
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  setSpoken(runningText());
}

QSize RunningLine::sizeHint() const {
  return {0, std::max(m_spinner->height(), lineHeight(textStyle())) + 2 * edgePadding};
}

QRect RunningLine::content() const {
  const int textWidth = static_cast<int>(std::ceil(lineWidth(runningText(), textStyle())));
  const int contentWidth = m_spinner->width() + spacing + textWidth;
  return {(width() - contentWidth) / 2, edgePadding, contentWidth, height() - 2 * edgePadding};
}

void RunningLine::resizeEvent(QResizeEvent* /*event*/) {
  m_spinner->move(content().left(), (height() - m_spinner->height()) / 2);
}

void RunningLine::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), TWColor::accentDim());
  const int top = (height() - lineHeight(textStyle())) / 2;
  const QRect box = content().adjusted(m_spinner->width() + spacing, 0, 0, 0);
  drawLine(painter, QRect(box.left(), top, box.width(), box.height()), runningText(), textStyle());
}

} // namespace tidewell
