#pragma once

#include "speedtest/SpeedTestState.h"
#include "ui/components/AccessibleWidgets.h"
#include "ui/components/ViewTime.h"

#include <QString>
#include <QWidget>

#include <optional>

namespace tidewell {

class Spinner;

/// Says that a speed test runs. Main thread.
class RunningLine final : public PaintedWidget {
  Q_OBJECT

public:
  RunningLine(const ViewTime& time, QWidget* parent);

  [[nodiscard]] QSize sizeHint() const override;

protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

private:
  [[nodiscard]] QRect content() const;

  Spinner* m_spinner; // a child
};

/// The figures of a speed test, and at what time of day it ended. Main thread.
class ResultLine final : public PaintedWidget {
  Q_OBJECT

public:
  explicit ResultLine(QWidget* parent);

  void setResult(const SpeedTestResult& result);
  [[nodiscard]] QString figures() const { return m_figures; }
  [[nodiscard]] QString timeOfDay() const { return m_timeOfDay; }

  [[nodiscard]] QSize sizeHint() const override;

  /// The time of day in the user's locale and time zone; empty for a time that no calendar has.
  [[nodiscard]] static QString timeOfDay(double secondsSince1970);

protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

private:
  [[nodiscard]] QRect figuresBox() const;
  void updateToolTip();

  QString m_figures;
  QString m_timeOfDay;
};

/// The line about the speed test: that it runs, else its last result, else nothing, and then it
/// takes no room. Main thread.
class SpeedTestStrip final : public QWidget {
  Q_OBJECT

public:
  SpeedTestStrip(const ViewTime& time, QWidget* parent);

  void setState(bool isRunning, const std::optional<SpeedTestResult>& result);

private:
  // Children, of which one is shown.
  RunningLine* m_running;
  ResultLine* m_result;
};

} // namespace tidewell
