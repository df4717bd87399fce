#pragma once

#include "ui/components/ViewTime.h"

#include <QColor>
#include <QWidget>

#include <functional>

namespace tidewell {

/// A slow breathing of a widget's opacity between 1 and 0.4, one second in each direction, for as
/// long as it is shown. Main thread.
///
/// The widget paints itself at `opacity()`. The curve has 32 levels, and the widget is repainted
/// only when the level changes, which at the turns of the curve is less often than every 50 ms.
class PulseAnimation final {
public:
  /// `now` tells the time in seconds. Every appearance of the widget starts the pulse afresh.
  PulseAnimation(QWidget& widget, std::function<double()> now);

  /// Whether the widget has appeared; nothing ever ends that.
  [[nodiscard]] bool isPulsing() const { return m_isPulsing; }
  [[nodiscard]] double opacity() const { return m_opacity; }
  /// Whether the timer runs.
  [[nodiscard]] bool isTicking() const { return m_ticker->isRunning(); }

  /// Takes the opacity of this moment and has the widget repainted if it is another one.
  void advance();

  /// The opacity so many seconds after the appearance.
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
