#pragma once

#include <QWidget>

#include <functional>

namespace tidewell {

class ShownTicker;

/// An indeterminate progress indicator: eight spokes, whose bright one turns once in 0.8 seconds
/// while the widget is shown.
class Spinner final : public QWidget {
  Q_OBJECT

public:
  /// `now` returns the time in seconds.
  explicit Spinner(std::function<double()> now, QWidget* parent = nullptr);

  /// The bright spoke: 0 to 7, clockwise from the top.
  [[nodiscard]] int spoke() const { return m_spoke; }
  [[nodiscard]] bool isTicking() const;

  /// Updates the spoke, and repaints if it changed.
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
