#include "ui/application/AbsenceNotice.h"

#include "ui/components/FittedText.h"
#include "ui/components/Painting.h"
#include "ui/components/ShownText.h"
#include "ui/tokens/TWColor.h"
#include "ui/tokens/TWFont.h"

#include <QEvent>
#include <QPainter>

namespace tidewell {
namespace {

// Fits into the panel's padding above its first line.
constexpr int noticeHeight = 20;
constexpr int margin = 4;
constexpr int radius = 6;
// The notice lets the pointer through, so it has no tool tip.
constexpr int smallestTextSize = 7;

TextStyle textStyle() {
  return {.font = TWFont::caption(),
          .color = TWColor::red,
          .alignment = Qt::AlignHCenter,
          .smallestPixelSize = smallestTextSize};
}

QString text() { return translatedText("Tidewell has stopped. Waiting for it to come back."); }

} // namespace

AbsenceNotice::AbsenceNotice(Published<bool>& isThere, Edge edge, QWidget* window)
    : PaintedWidget(QAccessible::AlertMessage, window), m_edge(edge) {
  setSpoken(text());
  setAttribute(Qt::WA_TransparentForMouseEvents);
  window->installEventFilter(this);
  place();
  m_subscription = isThere.subscribe([this](bool is) {
    setVisible(!is);
    raise();
  });
}

void AbsenceNotice::paintEvent(QPaintEvent* /*event*/) {
  SmoothPainter painter(this);
  fillRounded(painter, rect(), radius, TWColor::redDim);
  const int top = (height() - lineHeight(textStyle())) / 2;
  drawLine(painter, rect().adjusted(radius, top, -radius, 0), text(), textStyle());
}

bool AbsenceNotice::eventFilter(QObject* watched, QEvent* event) {
  if (watched == parent() && event->type() == QEvent::Resize) {
    place();
  }
  return QWidget::eventFilter(watched, event);
}

void AbsenceNotice::place() {
  const int inset = margin + radius;
  const int y = m_edge == Edge::top ? margin : parentWidget()->height() - margin - noticeHeight;
  setGeometry(inset, y, parentWidget()->width() - 2 * inset, noticeHeight);
}

} // namespace tidewell
