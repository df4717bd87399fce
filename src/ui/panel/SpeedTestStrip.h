#pragma once

#include "speedtest/SpeedTestState.h"
#include "ui/components/AccessibleWidgets.h"
#include "ui/components/ViewTime.h"

#include <QString>
#include <QWidget>

#include <optional>

namespace tidewell {

class Spinner;

/// A line shown while a speed test is running.
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

/// The figures of a speed test and the time of day when it ended.
class ResultLine final : public PaintedWidget {
  Q_OBJECT

public:
  explicit ResultLine(QWidget* parent);

  void setResult(const SpeedTestResult& result);
  [[nodiscard]] QString figures() const { return m_figures; }

  [[nodiscard]] QSize sizeHint() const override;

protected:
  void paintEvent(QPaintEvent* event) override;
  [[nodiscard]] QString cutText() const override;

private:
  [[nodiscard]] QRect figuresBox() const;

  QString m_figures;
  QString m_time;
};

/// The line about the speed test: running, or its last result. Without either it takes no space.
class SpeedTestStrip final : public QWidget {
  Q_OBJECT

public:
  SpeedTestStrip(const ViewTime& time, QWidget* parent);

  void setState(bool isRunning, const std::optional<SpeedTestResult>& result);

private:
  // Children; at most one is shown.
  RunningLine* m_running;
  ResultLine* m_result;
};

} // namespace tidewell
