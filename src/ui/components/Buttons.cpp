#include "ui/components/Buttons.h"

#include "ui/components/FittedText.h"
#include "ui/components/Painting.h"
#include "ui/components/ToolTip.h"
#include "ui/tokens/TWColor.h"
#include "ui/tokens/TWFont.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QPointer>
#include <QProxyStyle>
#include <QStyleOption>

#include <cmath>

namespace tidewell {
namespace {

// Makes Return and Enter press a button, as Space does, and shows its tool tip in the window.
class ButtonEvents final : public QObject {
public:
  explicit ButtonEvents(QAbstractButton* button) : QObject(button) {
    button->installEventFilter(this);
  }

protected:
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() == QEvent::ToolTip) {
      return ToolTip::showFor(*static_cast<QWidget*>(parent()), *event);
    }
    if (event->type() != QEvent::KeyPress) {
      return false;
    }
    const int key = static_cast<QKeyEvent*>(event)->key();
    const bool isReturn = key == Qt::Key_Return || key == Qt::Key_Enter;
    if (isReturn) {
      static_cast<QAbstractButton*>(parent())->click();
    }
    return isReturn;
  }
};

// Not focused by a click, which would leave the focus ring behind.
void prepare(QAbstractButton* button, Qt::FocusPolicy policy = Qt::TabFocus) {
  new ButtonEvents(button);
  button->setFocusPolicy(policy);
  button->setAttribute(Qt::WA_Hover);
}

/// Makes the whole button its box, for clicks and for assistive technology. Otherwise that is the
/// indicator and the text as a style would place them.
class WholeButton final : public QProxyStyle {
public:
  [[nodiscard]] QRect subElementRect(SubElement element, const QStyleOption* option,
                                     const QWidget* widget) const override {
    const bool isBox = element == SE_CheckBoxClickRect || element == SE_RadioButtonClickRect;
    return isBox ? option->rect : QProxyStyle::subElementRect(element, option, widget);
  }

  /// The only one, which ends with the application.
  static WholeButton* style() {
    static QPointer<WholeButton> style;
    if (style.isNull()) {
      style = new WholeButton;
      style->setParent(qApp);
    }
    return style;
  }
};

constexpr int actionPadding = 10;
constexpr int actionSpacing = 3;
constexpr int smallestActionSize = 8;
constexpr int actionInset = 2; // keeps long labels apart
constexpr double stateInset = 3.0;
constexpr double stateRadius = 6.0;
constexpr double focusWidth = 1.5;

TextStyle actionStyle() {
  return {.font = TWFont::standard(10, QFont::Medium),
          .color = TWColor::textSecondary,
          .alignment = Qt::AlignHCenter,
          .smallestPixelSize = smallestActionSize};
}

constexpr int textSidePadding = 14;
constexpr int textEdgePadding = 6;
constexpr double textRadius = 6.0;
constexpr int hoverLightness = 115; // percent
constexpr int pressedLightness = 85;

TextStyle textStyle(bool isEnabled = true) {
  return {.font = TWFont::standard(12, QFont::Medium),
          .color = isEnabled ? TWColor::accent : TWColor::textSecondary,
          .alignment = Qt::AlignHCenter};
}

constexpr int trackWidth = 36;
constexpr int trackHeight = 20;
constexpr double knobInset = 2.0;

} // namespace

ActionButton::ActionButton(Icon icon, const QString& label, QWidget* parent)
    : QPushButton(label, parent), m_icon(icon) {
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  prepare(this);
}

void ActionButton::setFace(Icon icon, const QString& label) {
  if (icon == m_icon && label == text()) {
    return;
  }
  m_icon = icon;
  setText(label); // also its accessible name
  setToolTip(ifCut(text(), actionStyle(), width() - 2 * actionInset));
  update();
}

void ActionButton::resizeEvent(QResizeEvent* event) {
  setToolTip(ifCut(text(), actionStyle(), width() - 2 * actionInset));
  QPushButton::resizeEvent(event);
}

QSize ActionButton::sizeHint() const {
  return {iconEdge, 2 * actionPadding + iconEdge + actionSpacing + lineHeight(actionStyle())};
}

void ActionButton::paintState(QPainter& painter) const {
  const QRectF inside = QRectF(rect()).adjusted(stateInset, stateInset, -stateInset, -stateInset);
  if (isDown() || underMouse()) {
    fillRounded(painter, inside, stateRadius, isDown() ? TWColor::surface3 : TWColor::surface2);
  }
  if (hasFocus()) {
    painter.setPen(QPen(TWColor::accent, focusWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(inside, stateRadius, stateRadius);
  }
}

void ActionButton::paintEvent(QPaintEvent* /*event*/) {
  SmoothPainter painter(this);
  paintState(painter);
  const int left = (width() - iconEdge) / 2;
  drawIcon(painter, m_icon, QPointF(left, actionPadding), TWColor::textSecondary);
  const int labelTop = actionPadding + iconEdge + actionSpacing;
  drawLine(painter, rect().adjusted(actionInset, labelTop, -actionInset, 0), text(), actionStyle());
}

void ActionButton::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Left || event->key() == Qt::Key_Right) {
    focusNextPrevChild(event->key() == Qt::Key_Right);
    return;
  }
  QPushButton::keyPressEvent(event);
}

TextButton::TextButton(const QString& text, QWidget* parent) : QPushButton(text, parent) {
  prepare(this);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize TextButton::sizeHint() const {
  const int textWidth = static_cast<int>(std::ceil(lineWidth(text(), textStyle())));
  return {textWidth + 2 * textSidePadding, lineHeight(textStyle()) + 2 * textEdgePadding};
}

void TextButton::paintEvent(QPaintEvent* /*event*/) {
  SmoothPainter painter(this);
  QColor ground = isEnabled() ? TWColor::accentDim : TWColor::surface2;
  if (isDown()) {
    ground = ground.lighter(pressedLightness);
  } else if (isEnabled() && underMouse()) {
    ground = ground.lighter(hoverLightness);
  }
  fillRounded(painter, rect(), textRadius, ground);
  drawLine(painter, rect().adjusted(0, textEdgePadding, 0, -textEdgePadding), text(),
           textStyle(isEnabled()));
  if (hasFocus()) {
    drawFocusRing(painter, rect(), textRadius);
  }
}

ChoiceButton::ChoiceButton(const QString& text, QWidget* parent)
    : QRadioButton(text, parent), m_focusMark(new FocusMark(this)) {
  setStyle(WholeButton::style());
  prepare(this, Qt::ClickFocus); // Tab stops only at the chosen one
  connect(this, &QRadioButton::toggled, this,
          [this](bool isChosen) { setFocusPolicy(isChosen ? Qt::StrongFocus : Qt::ClickFocus); });
}

ToggleSwitch::ToggleSwitch(QWidget* parent) : QCheckBox(parent) {
  setStyle(WholeButton::style());
  prepare(this);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize ToggleSwitch::sizeHint() const { return {trackWidth + 2 * margin, trackHeight + 2 * margin}; }

void ToggleSwitch::paintEvent(QPaintEvent* /*event*/) {
  SmoothPainter painter(this);
  const QRectF track = QRectF(rect()).adjusted(margin, margin, -margin, -margin);
  fillRounded(painter, track, trackHeight / 2.0,
              isChecked() ? TWColor::accent : TWColor::textTertiary);

  const double knob = trackHeight - 2.0 * knobInset;
  const double left = isChecked() ? track.right() - knobInset - knob : track.left() + knobInset;
  painter.setBrush(TWColor::text);
  painter.drawEllipse(QRectF(left, track.top() + knobInset, knob, knob));
  if (hasFocus()) {
    drawFocusRing(painter, rect(), height() / 2.0);
  }
}

} // namespace tidewell
