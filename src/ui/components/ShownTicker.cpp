#include "ui/components/ShownTicker.h"

#include <QEvent>

#include <utility>

namespace tidewell {

ShownTicker::ShownTicker(QWidget& widget, int periodMs, Calls calls)
    : QObject(&widget), m_calls(std::move(calls)) {
  m_timer.setInterval(periodMs);
  connect(&m_timer, &QTimer::timeout, this, [this] { m_calls.tick(); });
  widget.installEventFilter(this);
}

bool ShownTicker::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Show && !isRunning()) {
    m_calls.shown();
    m_timer.start();
  } else if (event->type() == QEvent::Hide) {
    m_timer.stop();
  }
  return QObject::eventFilter(watched, event);
}

} // namespace tidewell
