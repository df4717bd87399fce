#pragma once

#include "sampling/NetworkSnapshot.h"
#include "ui/charts/ValueAxis.h"
#include "ui/components/AccessibleWidgets.h"

#include <QColor>
#include <QString>

#include <vector>

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

/// Download and upload of all samples, in megabits per second. Main thread.
class BandwidthChart final : public AxisChart {
  Q_OBJECT

public:
  explicit BandwidthChart(QWidget* parent = nullptr);

  /// Shows these samples, oldest first.
  void setSnapshots(const SnapshotList& snapshots);

protected:
  void paintCurves(QPainter& painter) const override;

private:
  std::vector<double> m_download;
  std::vector<double> m_upload;
};

/// Latency of all samples, in milliseconds. Main thread.
class LatencyChart final : public AxisChart {
  Q_OBJECT

public:
  explicit LatencyChart(QWidget* parent = nullptr);

  /// Shows these samples, oldest first.
  void setSnapshots(const SnapshotList& snapshots);

protected:
  void paintCurves(QPainter& painter) const override;

private:
  [[nodiscard]] QString summary() const;

  std::vector<double> m_latency;
};

/// Names a line of a chart beside a piece of its colour. Main thread.
class LegendItem final : public PaintedWidget {
  Q_OBJECT

public:
  LegendItem(QString label, QColor color, QWidget* parent);

protected:
  void paintEvent(QPaintEvent* event) override;

private:
  QString m_label;
  QColor m_color;
};

} // namespace tidewell
