#pragma once

#include <QTimer>
#include <QWidget>

#include <functional>

namespace tidewell {

/// Time as the views see it: handed in, so that a test moves it by hand. Main thread.
struct ViewTime {
  /// Seconds that never go back.
  std::function<double()> now;
  /// Calls back once, so many seconds later.
  std::function<void(double seconds, std::function<void()> task)> after;

  /// The machine's time. Delays need the application's event loop.
  [[nodiscard]] static ViewTime real();
};

/// A timer that runs only while a widget is shown. Owned by the widget. Main thread.
class ShownTicker final : public QObject {
  Q_OBJECT

public:
  struct Calls {
    /// The widget appears.
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
