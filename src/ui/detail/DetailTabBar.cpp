#include "ui/detail/DetailTabBar.h"

#include "ui/components/FittedText.h"
#include "ui/components/FocusRing.h"
#include "ui/tokens/TWColor.h"
#include "ui/tokens/TWFont.h"

#include <QPainter>
#include <QWheelEvent>

#include <cmath>

namespace tidewell {

namespace {

// Beside a title; with the padding around the bar, the first one stands above the content's edge.
constexpr int sidePadding = 8;
constexpr int edgePadding = 4;
constexpr int barSpacing = 4;
constexpr int barHeight = 2;
constexpr double focusRadius = 5.0;

TextStyle titleStyle(bool isSelected) {
  static const QFont font = TWFont::standard(13, QFont::Medium);
  return {font, isSelected ? TWColor::accent() : TWColor::textSecondary()};
}

} // namespace

DetailTabBar::DetailTabBar(const QStringList& titles, QWidget* parent) : QTabBar(parent) {
  setAccessibleName(QStringLiteral("Tabs"));
  setDrawBase(false);
  setExpanding(false);
  setUsesScrollButtons(false);
  setElideMode(Qt::ElideNone);
  setFont(titleStyle(true).font);
  setFocusPolicy(Qt::TabFocus);
  for (const QString& title : titles) {
    addTab(title);
  }
}

QSize DetailTabBar::tabSizeHint(int index) const {
  const double textWidth = lineWidth(tabText(index), titleStyle(true));
  return {static_cast<int>(std::ceil(textWidth)) + 2 * sidePadding,
          edgePadding + lineHeight(titleStyle(true)) + barSpacing + barHeight};
}

void DetailTabBar::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  for (int index = 0; index < count(); ++index) {
    paintTab(painter, index);
  }
}

void DetailTabBar::paintTab(QPainter& painter, int index) const {
  const QRect tab = tabRect(index);
  const bool isSelected = index == currentIndex();
  const QRect title = tab.adjusted(sidePadding, edgePadding, -sidePadding, 0);
  drawLine(painter, title, tabText(index), titleStyle(isSelected));
  if (isSelected) {
    painter.fillRect(QRect(title.left(), tab.bottom() + 1 - barHeight, title.width(), barHeight),
                     TWColor::accent());
  }
  if (isSelected && hasFocus()) {
    drawFocusRing(painter, tab.adjusted(1, 0, -1, -barHeight - 1), focusRadius);
  }
}

void DetailTabBar::wheelEvent(QWheelEvent* event) { event->ignore(); }

} // namespace tidewell
