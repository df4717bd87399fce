#pragma once

#include "ui/components/PaintedWidget.h"
#include "ui/components/ViewTime.h"

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

} // namespace tidewell
