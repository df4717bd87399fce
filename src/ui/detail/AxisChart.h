#pragma once

#include "ui/components/PaintedWidget.h"
#include "ui/detail/ValueAxis.h"

namespace tidewell {

/// A chart without a horizontal axis and with a vertical one at its right, whose uppermost label
/// tells the unit. Main thread.
class AxisChart : public PaintedWidget {
  Q_OBJECT

public:
  [[nodiscard]] QSize sizeHint() const override { return {0, m_height}; }
  [[nodiscard]] const ValueAxis& axis() const { return m_axis; }

  /// Where the values lie.
  [[nodiscard]] QRectF plot() const;

protected:
  AxisChart(int height, QString unit, QWidget* parent);

  /// The axis to draw from now on.
  void setAxis(const ValueAxis& axis);
  virtual void paintCurves(QPainter& painter) const = 0;

  void paintEvent(QPaintEvent* event) override;

private:
  void paintGrid(QPainter& painter) const;

  int m_height;
  QString m_unit;
  ValueAxis m_axis;
};

} // namespace tidewell
