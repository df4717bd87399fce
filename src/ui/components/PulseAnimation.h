#pragma once

#include "ui/components/ViewTime.h"

#include <QColor>
#include <QWidget>

#include <functional>

namespace tidewell {

/// Fades a widget's opacity between 1 and 0.4 while it is shown, one second in each direction.
///
/// The widget paints itself with `opacity()`. The curve has 32 levels. The widget is repainted only
/// when the level changes, which is less often than every 50 ms near the ends of the curve.
class PulseAnimation final {
public:
  /// `now` returns the time in seconds. The pulse restarts whenever the widget is shown.
  PulseAnimation(QWidget& widget, std::function<double()> now);

  /// Whether the widget has been shown. Never becomes false again.
  [[nodiscard]] bool isPulsing() const { return m_isPulsing; }
  [[nodiscard]] double opacity() const { return m_opacity; }
  /// Whether the timer is running.
  [[nodiscard]] bool isTicking() const { return m_ticker->isRunning(); }

  /// Updates the opacity, and repaints the widget if it changed.
  void advance();

  /// The opacity this many seconds after the start.
  [[nodiscard]] static double opacityAfter(double seconds);

private:
  void begin();

  QWidget& m_widget;
  std::function<double()> m_now;
  double m_beginning = 0.0;
  double m_opacity = 1.0;
  bool m_isPulsing = false;
  ShownTicker* m_ticker; // the widget's
};

/// A pulsing dot of 6 by 6 pixels on a plain background. It is opaque, so that its animation
/// repaints nothing below it.
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
