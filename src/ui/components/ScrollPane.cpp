#include "ui/components/ScrollPane.h"

#include "ui/components/Painting.h"
#include "ui/tokens/TWColor.h"

#include <QAccessibleWidget>
#include <QPainter>
#include <QScrollBar>

namespace tidewell {
namespace {

constexpr int lineStep = 24;
constexpr double ringInset = 2.0;
constexpr double ringRadius = 6.0;
// Gives the handle a contrast of 3.2:1. WCAG 2.1, 1.4.11, asks for 3:1.
constexpr double handleOpacity = 0.72;

// Shows only the handle, and nothing if there is nothing to scroll.
QString barLook() {
  return QStringLiteral("QScrollBar:vertical { width: %1px; margin: 0; background: %2; }"
                        "QScrollBar::handle:vertical { background: %3; border-radius: 3px;"
                        " min-height: 32px; margin: 2px; }"
                        "QScrollBar::handle:vertical:hover { background: %4; }"
                        "QScrollBar::handle:vertical:disabled { background: %2; }"
                        "QScrollBar::add-line, QScrollBar::sub-line { height: 0; }"
                        "QScrollBar::add-page, QScrollBar::sub-page { background: %2; }")
      .arg(QString::number(ScrollPane::barWidth), TWColor::surface.name(),
           withOpacity(TWColor::textSecondary, handleOpacity).name(QColor::HexArgb),
           TWColor::textSecondary.name());
}

QAccessibleInterface* makePane(const QString& /*className*/, QObject* object) {
  auto* const pane = qobject_cast<ScrollPane*>(object);
  return pane ? new QAccessibleWidget(pane, QAccessible::Pane) : nullptr;
}

} // namespace

ScrollPane::ScrollPane(QWidget* content, const QString& name, QWidget* parent)
    : QScrollArea(parent) {
  QAccessible::installFactory(makePane); // once, however often it is called
  setAccessibleName(name);
  verticalScrollBar()->setAccessibleName(name);
  setFrameShape(QFrame::NoFrame);
  setWidgetResizable(true);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  verticalScrollBar()->setStyleSheet(barLook());
  verticalScrollBar()->setSingleStep(lineStep);
  connect(verticalScrollBar(), &QScrollBar::rangeChanged, this, &ScrollPane::rangeChanged);
  rangeChanged(0, 0);
  setWidget(content);
  content->setAutoFillBackground(false);
  viewport()->setAutoFillBackground(false);
}

void ScrollPane::reveal(QWidget& widget) {
  for (QWidget* above = widget.parentWidget(); above != nullptr; above = above->parentWidget()) {
    if (auto* const pane = qobject_cast<ScrollPane*>(above)) {
      pane->ensureWidgetVisible(&widget, 0, 0);
      return;
    }
  }
}

void ScrollPane::paintEvent(QPaintEvent* /*event*/) {
  if (hasFocus()) {
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::Antialiasing);
    drawFocusRing(painter,
                  QRectF(viewport()->rect()).adjusted(ringInset, ringInset, -ringInset, -ringInset),
                  ringRadius);
  }
}

void ScrollPane::rangeChanged(int minimum, int maximum) {
  const bool canScroll = maximum > minimum;
  verticalScrollBar()->setEnabled(canScroll);
  setFocusPolicy(canScroll ? Qt::TabFocus : Qt::NoFocus);
}

} // namespace tidewell
