#include "ui/components/PulseAnimation.h"

#include <QEasingCurve>
#include <QPainter>

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

PulseDot::PulseDot(std::function<double()> now, QWidget* parent)
    : QWidget(parent), m_pulse(*this, std::move(now)) {
  setFixedSize(edge, edge);
  setAttribute(Qt::WA_OpaquePaintEvent);
  setAttribute(Qt::WA_TransparentForMouseEvents);
}

void PulseDot::setColors(const QColor& dot, const QColor& ground) {
  m_dot = dot;
  m_ground = ground;
  update();
}

void PulseDot::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), m_ground);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setOpacity(m_pulse.opacity());
  painter.setPen(Qt::NoPen);
  painter.setBrush(m_dot);
  painter.drawEllipse(rect());
}

} // namespace tidewell
