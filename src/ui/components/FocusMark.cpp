#include "ui/components/FocusMark.h"

#include <QFocusEvent>
#include <QWidget>

namespace tidewell {

FocusMark::FocusMark(QWidget* control) : QObject(control), m_control(control) {
  control->installEventFilter(this);
}

bool FocusMark::isShown() const { return m_control->hasFocus() && !m_isClicked; }

bool FocusMark::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusIn) {
    const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
    // Nothing changes when the window becomes active again.
    if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason) {
      m_isClicked = reason == Qt::MouseFocusReason;
    }
  } else if (event->type() == QEvent::KeyPress && m_isClicked) {
    m_isClicked = false;
    m_control->update();
  }
  return QObject::eventFilter(watched, event);
}

} // namespace tidewell
