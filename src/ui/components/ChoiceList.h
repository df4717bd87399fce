#pragma once

#include <QComboBox>
#include <QStyledItemDelegate>

namespace tidewell {

/// Draws an entry of an open list: on a tinted background under the pointer, and in the accent
/// colour if it is selected.
class ChoiceListItem final : public QStyledItemDelegate {
  Q_OBJECT

public:
  explicit ChoiceListItem(QObject* parent);

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                               const QModelIndex& index) const override;
};

/// A drop-down list, 120 pixels wide. It may have no selection.
class ChoiceList final : public QComboBox {
  Q_OBJECT

public:
  static constexpr int listWidth = 120;

  ChoiceList(const QStringList& choices, QWidget* parent);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  /// Ignored, so that the page scrolls and the selection does not change.
  void wheelEvent(QWheelEvent* event) override;
};

} // namespace tidewell
