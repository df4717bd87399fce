#pragma once

#include "ui/components/PulseAnimation.h"

#include <QColor>
#include <QWidget>

namespace tidewell {

/// A round dot of 6 by 6 pixels that pulses on a plain ground. It fills all of itself, so that a
/// beat repaints nothing below it. Main thread.
class PulseDot final : public QWidget {
  Q_OBJECT

public:
  static constexpr int edge = 6;

  PulseDot(std::function<double()> now, QWidget* parent);

  void setColors(const QColor& dot, const QColor& ground);
  [[nodiscard]] PulseAnimation& pulse() { return m_pulse; }

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  QColor m_dot;
  QColor m_ground;
  PulseAnimation m_pulse;
};

} // namespace tidewell
