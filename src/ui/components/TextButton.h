#pragma once

#include <QPushButton>

namespace tidewell {

/// A button of one word or two on a tinted ground, pressed with the mouse, with Space or with
/// Enter. Main thread.
class TextButton final : public QPushButton {
  Q_OBJECT

public:
  TextButton(const QString& text, QWidget* parent);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
};

} // namespace tidewell
