#include "ui/components/ViewTime.h"

#include <QCoreApplication>
#include <QTimer>

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
  auto* const timer = new QTimer(QCoreApplication::instance());
  timer->setSingleShot(true);
  QObject::connect(timer, &QTimer::timeout, timer, [timer, task = std::move(task)] {
    timer->deleteLater();
    task();
  });
  timer->start(static_cast<int>(std::lround(seconds * 1000.0)));
}

} // namespace

ViewTime ViewTime::real() { return {secondsNow, callLater}; }

} // namespace tidewell
