#pragma once

#include <QCheckBox>

namespace tidewell {

/// A switch without a label, turned with the mouse, with Space or with Enter. Assistive technology
/// meets it as a check box. Main thread.
class ToggleSwitch final : public QCheckBox {
  Q_OBJECT

public:
  explicit ToggleSwitch(QWidget* parent);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
  [[nodiscard]] bool hitButton(const QPoint& point) const override;
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
};

} // namespace tidewell
