#include "ui/components/ToggleSwitch.h"

#include "ui/components/FocusRing.h"
#include "ui/tokens/TWColor.h"

#include <QKeyEvent>
#include <QPainter>

namespace tidewell {

namespace {

constexpr int trackWidth = 36;
constexpr int trackHeight = 20;
// Around the track, for the mark of the keyboard.
constexpr int margin = 3;
constexpr double knobInset = 2.0;

} // namespace

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
