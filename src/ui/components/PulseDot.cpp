#include "ui/components/PulseDot.h"

#include <QPainter>

#include <utility>

namespace tidewell {

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
