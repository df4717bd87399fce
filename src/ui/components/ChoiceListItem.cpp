#include "ui/components/ChoiceListItem.h"

#include "ui/components/FittedText.h"
#include "ui/tokens/TWColor.h"

#include <QComboBox>
#include <QPainter>

namespace tidewell {

namespace {

constexpr int edgePadding = 5;
constexpr int sidePadding = 10;

bool isChosen(const QModelIndex& index, const QObject* list) {
  const auto* const choices = qobject_cast<const QComboBox*>(list);
  return choices != nullptr && choices->currentIndex() == index.row();
}

} // namespace

ChoiceListItem::ChoiceListItem(QObject* parent) : QStyledItemDelegate(parent) {}

void ChoiceListItem::paint(QPainter* painter, const QStyleOptionViewItem& option,
                           const QModelIndex& index) const {
  const bool isPointedAt = option.state.testFlag(QStyle::State_Selected) ||
                           option.state.testFlag(QStyle::State_MouseOver);
  painter->fillRect(option.rect, isPointedAt ? TWColor::accentDim() : TWColor::surface2());
  TextStyle style{option.font, isChosen(index, parent()) ? TWColor::accent() : TWColor::text()};
  style.smallestPixelSize = 10;
  drawLine(*painter, option.rect.adjusted(sidePadding, edgePadding, -sidePadding, -edgePadding),
           index.data().toString(), style);
}

QSize ChoiceListItem::sizeHint(const QStyleOptionViewItem& option,
                               const QModelIndex& /*index*/) const {
  return {0, option.fontMetrics.height() + 2 * edgePadding};
}

} // namespace tidewell
