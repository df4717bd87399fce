#include "ui/components/Buttons.h"

#include "ui/components/FittedText.h"
#include "ui/components/Painting.h"
#include "ui/tokens/TWColor.h"
#include "ui/tokens/TWFont.h"

#include <QKeyEvent>
#include <QPainter>

#include <cmath>

namespace tidewell {

namespace {

constexpr int actionPadding = 10;
constexpr int actionSpacing = 3;
constexpr double stateInset = 3.0;
constexpr double stateRadius = 6.0;
constexpr double focusWidth = 1.5;

TextStyle actionStyle() {
  static const QFont font = TWFont::standard(10, QFont::Medium);
  TextStyle style{font, TWColor::textSecondary()};
  style.alignment = Qt::AlignHCenter;
  return style;
}

constexpr int textSidePadding = 14;
constexpr int textEdgePadding = 6;
constexpr double textRadius = 6.0;
constexpr int hoverLightness = 115; // percent
constexpr int pressedLightness = 85;

TextStyle textStyle() {
  static const QFont font = TWFont::standard(12, QFont::Medium);
  TextStyle style{font, TWColor::accent()};
  style.alignment = Qt::AlignHCenter;
  return style;
}

constexpr int trackWidth = 36;
constexpr int trackHeight = 20;
// Around the track, for the mark of the keyboard.
constexpr int margin = 3;
constexpr double knobInset = 2.0;

} // namespace

ActionButton::ActionButton(Icon icon, const QString& label, QWidget* parent)
    : QPushButton(label, parent), m_icon(icon) {
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  setFocusPolicy(Qt::TabFocus); // not by a click, which would leave its mark
  setAttribute(Qt::WA_Hover);
}

void ActionButton::setFace(Icon icon, const QString& label) {
  if (icon == m_icon && label == text()) {
    return;
  }
  m_icon = icon;
  setText(label); // which is also its accessible name
  update();
}

QSize ActionButton::sizeHint() const {
  return {iconEdge, 2 * actionPadding + iconEdge + actionSpacing + lineHeight(actionStyle())};
}

void ActionButton::paintState(QPainter& painter) const {
  const QRectF inside = QRectF(rect()).adjusted(stateInset, stateInset, -stateInset, -stateInset);
  if (isDown() || underMouse()) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(isDown() ? TWColor::surface3() : TWColor::surface2());
    painter.drawRoundedRect(inside, stateRadius, stateRadius);
  }
  if (hasFocus()) {
    painter.setPen(QPen(TWColor::accent(), focusWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(inside, stateRadius, stateRadius);
  }
}

void ActionButton::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  paintState(painter);
  const int left = (width() - iconEdge) / 2;
  drawIcon(painter, m_icon, QPointF(left, actionPadding), TWColor::textSecondary());
  const int labelTop = actionPadding + iconEdge + actionSpacing;
  drawLine(painter, rect().adjusted(0, labelTop, 0, 0), text(), actionStyle());
}

void ActionButton::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    click();
    return;
  }
  if (event->key() == Qt::Key_Left || event->key() == Qt::Key_Right) {
    focusNextPrevChild(event->key() == Qt::Key_Right);
    return;
  }
  QPushButton::keyPressEvent(event);
}

TextButton::TextButton(const QString& text, QWidget* parent) : QPushButton(text, parent) {
  setFocusPolicy(Qt::TabFocus);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  setAttribute(Qt::WA_Hover);
}

QSize TextButton::sizeHint() const {
  const int textWidth = static_cast<int>(std::ceil(lineWidth(text(), textStyle())));
  return {textWidth + 2 * textSidePadding, lineHeight(textStyle()) + 2 * textEdgePadding};
}

void TextButton::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  QColor ground = TWColor::accentDim();
  if (isDown()) {
    ground = ground.lighter(pressedLightness);
  } else if (underMouse()) {
    ground = ground.lighter(hoverLightness);
  }
  painter.setPen(Qt::NoPen);
  painter.setBrush(ground);
  painter.drawRoundedRect(rect(), textRadius, textRadius);
  drawLine(painter, rect().adjusted(0, textEdgePadding, 0, -textEdgePadding), text(), textStyle());
  if (hasFocus()) {
    drawFocusRing(painter, rect(), textRadius);
  }
}

void TextButton::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    click();
    return;
  }
  QPushButton::keyPressEvent(event);
}

ChoiceButton::ChoiceButton(const QString& text, QWidget* parent) : QRadioButton(text, parent) {
  // One stop for all of them. Not by a click, which would leave its mark.
  setFocusPolicy(Qt::NoFocus);
  connect(this, &QRadioButton::toggled, this,
          [this](bool isChosen) { setFocusPolicy(isChosen ? Qt::TabFocus : Qt::NoFocus); });
  setAttribute(Qt::WA_Hover);
}

bool ChoiceButton::hitButton(const QPoint& point) const { return rect().contains(point); }

void ChoiceButton::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    click();
    return;
  }
  QRadioButton::keyPressEvent(event);
}

ToggleSwitch::ToggleSwitch(QWidget* parent) : QCheckBox(parent) {
  setFocusPolicy(Qt::TabFocus);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize ToggleSwitch::sizeHint() const { return {trackWidth + 2 * margin, trackHeight + 2 * margin}; }

bool ToggleSwitch::hitButton(const QPoint& point) const { return rect().contains(point); }

void ToggleSwitch::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF track = QRectF(rect()).adjusted(margin, margin, -margin, -margin);
  painter.setPen(Qt::NoPen);
  painter.setBrush(isChecked() ? TWColor::accent() : TWColor::textTertiary());
  painter.drawRoundedRect(track, trackHeight / 2.0, trackHeight / 2.0);

  const double knob = trackHeight - 2.0 * knobInset;
  const double left = isChecked() ? track.right() - knobInset - knob : track.left() + knobInset;
  painter.setBrush(TWColor::text());
  painter.drawEllipse(QRectF(left, track.top() + knobInset, knob, knob));
  if (hasFocus()) {
    drawFocusRing(painter, rect(), height() / 2.0);
  }
}

void ToggleSwitch::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    click();
    return;
  }
  QCheckBox::keyPressEvent(event);
}

} // namespace tidewell
