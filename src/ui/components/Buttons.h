#pragma once

#include "ui/components/FocusMark.h"
#include "ui/components/Icon.h"

#include <QCheckBox>
#include <QPushButton>
#include <QRadioButton>

namespace tidewell {

/// A borderless button: an icon over a label. Clicked anywhere in its rectangle, or pressed with
/// Space or Enter. Left and Right move the focus.
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
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

private:
  void paintState(QPainter& painter) const;

  Icon m_icon;
};

/// A text button on a tinted background. Space and Enter press it.
class TextButton final : public QPushButton {
  Q_OBJECT

public:
  TextButton(const QString& text, QWidget* parent);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
  void paintEvent(QPaintEvent* event) override;
};

/// One of several exclusive choices with the same parent. Chosen by a click anywhere in its
/// rectangle, with Space, Enter or the arrow keys. A click gives it the focus, so that the arrow
/// keys go on from there.
class ChoiceButton : public QRadioButton {
  Q_OBJECT

public:
  ChoiceButton(const QString& text, QWidget* parent);

  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
  [[nodiscard]] bool showsFocus() const { return m_focusMark->isShown(); }

private:
  FocusMark* m_focusMark; // a child
};

/// A switch without a label. Space and Enter turn it. A check box to assistive technology.
class ToggleSwitch final : public QCheckBox {
  Q_OBJECT

public:
  /// The space around the switch in pixels, for the focus ring.
  static constexpr int margin = 3;

  explicit ToggleSwitch(QWidget* parent);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
  void paintEvent(QPaintEvent* event) override;
};

} // namespace tidewell
