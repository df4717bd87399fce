#pragma once

#include "ui/components/icons/Icon.h"

#include <QPushButton>

namespace tidewell {

/// A borderless button: an icon over a label, pressed anywhere in its rectangle, with Space or with
/// Enter. Main thread.
class ActionButton final : public QPushButton {
  Q_OBJECT

public:
  ActionButton(Icon icon, const QString& label, QWidget* parent);

  void setFace(Icon icon, const QString& label);
  [[nodiscard]] Icon face() const { return m_icon; }

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

private:
  void paintState(QPainter& painter) const;

  Icon m_icon;
};

} // namespace tidewell
