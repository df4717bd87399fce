#pragma once

#include "sampling/NetworkSnapshot.h"
#include "ui/charts/ValueAxis.h"
#include "ui/components/AccessibleWidgets.h"

#include <QColor>
#include <QString>

#include <vector>

namespace tidewell {

/// A chart with a vertical axis at its right and no horizontal one. The top label has the unit.
class AxisChart : public PaintedWidget {
  Q_OBJECT

public:
  [[nodiscard]] QSize sizeHint() const override { return {0, m_height}; }
  [[nodiscard]] const ValueAxis& axis() const { return m_axis; }

  /// The area of the values.
  [[nodiscard]] QRectF plot() const;

protected:
  /// `units` as in ValueAxis.
  AxisChart(int height, QStringList units, QWidget* parent);

  /// Replaces the axis.
  void setAxis(const ValueAxis& axis);
  virtual void paintCurves(QPainter& painter) const = 0;

  void paintEvent(QPaintEvent* event) override;

private:
  [[nodiscard]] int labelWidth() const;
  void paintGrid(QPainter& painter) const;

  int m_height;
  QStringList m_units;
  ValueAxis m_axis;
};

/// Download and upload of all samples, in megabits per second.
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

/// Latency of all samples, in milliseconds.
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

/// A legend entry: a sample of a curve's colour and the curve's name.
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
