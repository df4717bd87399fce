#pragma once

#include "speedtest/SpeedTestState.h"
#include "ui/components/AccessibleWidgets.h"
#include "ui/components/ViewTime.h"

#include <QString>
#include <QWidget>

#include <string>

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
  [[nodiscard]] QString cutText() const override;

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

/// Says that the last speed test failed, and why.
class FailureLine final : public PaintedWidget {
  Q_OBJECT

public:
  explicit FailureLine(QWidget* parent);

  void setReason(const std::string& reason);

  [[nodiscard]] QSize sizeHint() const override;

protected:
  void paintEvent(QPaintEvent* event) override;
  [[nodiscard]] QString cutText() const override;

private:
  QString m_reason;
};

/// The lines about the speed test: running, or its last result. After a run that failed: why, and
/// the result of the last one that did not. Without any it takes no space.
class SpeedTestStrip final : public QWidget {
  Q_OBJECT

public:
  SpeedTestStrip(const ViewTime& time, QWidget* parent);

  void setState(const SpeedTestState& state);

private:
  // Children.
  RunningLine* m_running;
  FailureLine* m_failure;
  ResultLine* m_result;
};

} // namespace tidewell
