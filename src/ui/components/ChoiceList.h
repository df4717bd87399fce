#pragma once

#include <QComboBox>
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

/// A drop-down list of choices, 120 pixels wide, of which none may be chosen. Main thread.
class ChoiceList final : public QComboBox {
  Q_OBJECT

public:
  static constexpr int listWidth = 120;

  ChoiceList(const QStringList& choices, QWidget* parent);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  /// Goes on to what scrolls: a wheel that turns over a list must not change what is chosen.
  void wheelEvent(QWheelEvent* event) override;
};

} // namespace tidewell
