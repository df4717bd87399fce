#pragma once

#include "speedtest/SpeedTestState.h"
#include "ui/components/PaintedWidget.h"

#include <QString>

namespace tidewell {

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

} // namespace tidewell
