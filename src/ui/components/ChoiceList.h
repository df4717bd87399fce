#pragma once

#include <QComboBox>

namespace tidewell {

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
