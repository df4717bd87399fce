#include "ui/components/ViewTime.h"

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

} // namespace

ViewTime ViewTime::real() {
  return {secondsNow, [](double seconds, std::function<void()> task) {
            QTimer::singleShot(static_cast<int>(std::lround(seconds * 1000.0)), std::move(task));
          }};
}

} // namespace tidewell
