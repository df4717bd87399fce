#pragma once

#include "ui/components/Icon.h"

#include <QCheckBox>
#include <QPushButton>
#include <QRadioButton>

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
