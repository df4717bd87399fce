#pragma once

#include <QTimer>
#include <QWidget>

#include <functional>

namespace tidewell {

/// The time for views. Tests pass their own.
struct ViewTime {
  /// Monotonic time in seconds.
  std::function<double()> now;
  /// Calls `task` once after this many seconds.
  std::function<void(double seconds, std::function<void()> task)> after;

  /// The real time. Delays need the application's event loop.
  [[nodiscard]] static ViewTime real();
};

/// A timer that runs only while its widget, which owns it, is shown.
class ShownTicker final : public QObject {
  Q_OBJECT

public:
  struct Calls {
    /// The widget is shown.
    std::function<void()> shown;
    /// A period has passed.
    std::function<void()> tick;
  };

  ShownTicker(QWidget& widget, int periodMs, Calls calls);

  [[nodiscard]] bool isRunning() const { return m_timer.isActive(); }

protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

private:
  QTimer m_timer;
  Calls m_calls;
};

} // namespace tidewell
