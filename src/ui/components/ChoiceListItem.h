#pragma once

#include <QStyledItemDelegate>

namespace tidewell {

/// Draws one choice of an open list: bright on a tinted ground when it is pointed at, and in the
/// accent's colour when it is the chosen one. Main thread.
class ChoiceListItem final : public QStyledItemDelegate {
  Q_OBJECT

public:
  explicit ChoiceListItem(QObject* parent);

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                               const QModelIndex& index) const override;
};

} // namespace tidewell
