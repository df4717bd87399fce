#include "ui/components/ViewTime.h"

#include <QCoreApplication>
#include <QEvent>

#include <chrono>
#include <cmath>
#include <utility>

namespace tidewell {
namespace {

double secondsNow() {
  const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration<double>(sinceStart).count();
}

void callLater(double seconds, std::function<void()> task) {
  QTimer::singleShot(static_cast<int>(std::lround(seconds * 1000.0)), QCoreApplication::instance(),
                     std::move(task));
}

} // namespace

ViewTime ViewTime::real() { return {secondsNow, callLater}; }

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
