#include "ui/components/ChoiceList.h"

#include "ui/components/FittedText.h"
#include "ui/components/Painting.h"
#include "ui/components/ToolTip.h"
#include "ui/tokens/TWColor.h"
#include "ui/tokens/TWFont.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace tidewell {
namespace {

constexpr int itemPadding = 5;

bool isChosen(const QModelIndex& index, const QObject* list) {
  const auto* const choices = qobject_cast<const QComboBox*>(list);
  return choices != nullptr && choices->currentIndex() == index.row();
}

constexpr int edgePadding = 6;
constexpr int sidePadding = 10;
constexpr int chevronWidth = 8;
constexpr int spacing = 4;
constexpr int textWidth = ChoiceList::listWidth - 2 * sidePadding - chevronWidth - spacing;
constexpr double chevronHeight = 4.0;
constexpr double chevronPen = 1.4;
constexpr double radius = 6.0;

TextStyle textStyle() {
  return {
      .font = TWFont::standard(12, QFont::Normal), .color = TWColor::text, .smallestPixelSize = 10};
}

void drawChevron(QPainter& painter, QPointF centre) {
  const QPointF half(chevronWidth / 2.0, chevronHeight / 2.0);
  painter.setPen(
      QPen(TWColor::textSecondary, chevronPen, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.drawPolyline(QPolygonF{centre - half, centre + QPointF(0.0, half.y()),
                                 centre + QPointF(half.x(), -half.y())});
}

} // namespace

ChoiceListItem::ChoiceListItem(QObject* parent) : QStyledItemDelegate(parent) {}

void ChoiceListItem::paint(QPainter* painter, const QStyleOptionViewItem& option,
                           const QModelIndex& index) const {
  const bool isPointedAt = option.state.testFlag(QStyle::State_Selected) ||
                           option.state.testFlag(QStyle::State_MouseOver);
  painter->fillRect(option.rect, isPointedAt ? TWColor::accentDim : TWColor::surface2);
  TextStyle style{option.font, isChosen(index, parent()) ? TWColor::accent : TWColor::text};
  style.smallestPixelSize = 10;
  drawLine(*painter, option.rect.adjusted(sidePadding, itemPadding, -sidePadding, -itemPadding),
           index.data().toString(), style);
}

QSize ChoiceListItem::sizeHint(const QStyleOptionViewItem& option,
                               const QModelIndex& /*index*/) const {
  return {0, option.fontMetrics.height() + 2 * itemPadding};
}

ChoiceList::ChoiceList(const QStringList& choices, QWidget* parent) : QComboBox(parent) {
  setFocusPolicy(Qt::TabFocus);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  setAttribute(Qt::WA_Hover);
  setPalette(popupPalette());
  setFont(textStyle().font);
  addItems(choices);
  setCurrentIndex(-1);
  setItemDelegate(new ChoiceListItem(this));
  double widest = 0.0;
  for (const QString& choice : choices) {
    widest = std::max(widest, lineWidth(choice, textStyle()));
  }
  view()->setMinimumWidth(static_cast<int>(std::ceil(widest)) + 2 * sidePadding);
  connect(this, &QComboBox::currentTextChanged, this,
          [this](const QString& text) { setToolTip(ifCut(text, textStyle(), textWidth)); });
  view()->setPalette(popupPalette());
}

QSize ChoiceList::sizeHint() const {
  return {listWidth, lineHeight(textStyle()) + 2 * edgePadding};
}

void ChoiceList::paintEvent(QPaintEvent* /*event*/) {
  SmoothPainter painter(this);
  // The radius is that of the middle of the outline.
  drawFrame(painter, rect(), radius + 0.5, TWColor::surface3,
            underMouse() ? TWColor::surface3 : TWColor::surface2);
  drawLine(painter, QRect(sidePadding, edgePadding, textWidth, height() - 2 * edgePadding),
           currentText(), textStyle());
  drawChevron(painter, {width() - sidePadding - chevronWidth / 2.0, height() / 2.0});
  if (hasFocus()) {
    drawFocusRing(painter, rect(), radius);
  }
}

bool ChoiceList::event(QEvent* event) {
  if (event->type() == QEvent::ToolTip && ToolTip::showFor(*this, *event)) {
    return true;
  }
  return QComboBox::event(event);
}

void ChoiceList::keyPressEvent(QKeyEvent* event) {
  const int key = event->key();
  if (key == Qt::Key_Space || key == Qt::Key_Return || key == Qt::Key_Enter) {
    showPopup();
    return;
  }
  QComboBox::keyPressEvent(event);
}

void ChoiceList::wheelEvent(QWheelEvent* event) { event->ignore(); }

} // namespace tidewell
