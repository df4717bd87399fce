#pragma once

#include <QWidget>

#include <functional>

namespace tidewell {

class ShownTicker;

/// A small indicator of progress without a known end: eight spokes, of which the bright one goes
/// round once in 0.8 seconds while it is shown. Repaints only itself. Main thread.
class Spinner final : public QWidget {
  Q_OBJECT

public:
  /// `now` tells the time in seconds.
  explicit Spinner(std::function<double()> now, QWidget* parent = nullptr);

  /// The bright spoke, clockwise from the top, from 0 to 7.
  [[nodiscard]] int spoke() const { return m_spoke; }
  [[nodiscard]] bool isTicking() const;

  /// Takes the spoke of this moment and repaints if it is another one.
  void advance();

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  std::function<double()> m_now;
  double m_beginning = 0.0;
  int m_spoke = 0;
  ShownTicker* m_ticker; // a child
};

} // namespace tidewell
