#include "ui/components/PulseAnimation.h"

#include <QEasingCurve>

#include <cmath>
#include <utility>

namespace tidewell {

namespace {

constexpr int periodMs = 50;
constexpr int levels = 32;
constexpr double fadeSeconds = 1.0;
constexpr double dimmest = 0.4;

QEasingCurve easeInOut() {
  QEasingCurve curve(QEasingCurve::BezierSpline);
  curve.addCubicBezierSegment({0.42, 0.0}, {0.58, 1.0}, {1.0, 1.0});
  return curve;
}

} // namespace

PulseAnimation::PulseAnimation(QWidget& widget, std::function<double()> now)
    : m_widget(widget), m_now(std::move(now)),
      m_ticker(new ShownTicker(widget, periodMs, {[this] { begin(); }, [this] { advance(); }})) {}

double PulseAnimation::opacityAfter(double seconds) {
  static const QEasingCurve curve = easeInOut();
  const double phase = std::fmod(std::max(seconds, 0.0) / fadeSeconds, 2.0);
  const double progress = curve.valueForProgress(phase <= 1.0 ? phase : 2.0 - phase);
  return 1.0 - (1.0 - dimmest) * std::round(progress * levels) / levels;
}

void PulseAnimation::begin() {
  m_isPulsing = true;
  m_beginning = m_now();
  m_opacity = 1.0;
}

void PulseAnimation::advance() {
  const double opacity = opacityAfter(m_now() - m_beginning);
  if (opacity != m_opacity) {
    m_opacity = opacity;
    m_widget.update();
  }
}

} // namespace tidewell
