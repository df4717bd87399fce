#pragma once

#include <QRadioButton>

namespace tidewell {

/// One of several choices of which exactly one holds: those with the same parent. Chosen anywhere
/// in its rectangle, with Space or with Enter; the arrows move the choice. Main thread.
class ChoiceButton : public QRadioButton {
  Q_OBJECT

public:
  ChoiceButton(const QString& text, QWidget* parent);

  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
  [[nodiscard]] bool hitButton(const QPoint& point) const override;
  void keyPressEvent(QKeyEvent* event) override;
};

} // namespace tidewell
