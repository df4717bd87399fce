#pragma once

#include "sampling/NetworkSnapshot.h"
#include "ui/charts/ChartReading.h"
#include "ui/charts/ValueAxis.h"
#include "ui/components/AccessibleWidgets.h"

#include <QColor>
#include <QString>

#include <optional>
#include <vector>

namespace tidewell {

/// A chart of samples with a vertical axis at its right and no horizontal one. The top label has
/// the unit. Under the pointer it shows a sample's time and figures.
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

  /// What the chart is to assistive technology.
  struct Words {
    QString title;
    QString summary;
  };

  /// Replaces the samples, which the curves show, and the axis.
  void setSamples(const SnapshotList& snapshots, const ValueAxis& axis, const Words& words);
  virtual void paintCurves(QPainter& painter) const = 0;
  /// What the sample under the pointer shows before its rates.
  [[nodiscard]] virtual std::vector<ReadingPart> ownFigures(const NetworkSnapshot& sample) const;

  void paintEvent(QPaintEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  /// The page scrolls away under the pointer, which is no leaving.
  void wheelEvent(QWheelEvent* event) override;
  void hideEvent(QHideEvent* event) override;

private:
  [[nodiscard]] int labelWidth() const;
  void paintGrid(QPainter& painter) const;
  void pointAt(std::optional<double> x);
  [[nodiscard]] std::optional<ChartReading> reading() const;
  void speak();

  int m_height;
  QStringList m_units;
  ValueAxis m_axis;
  SnapshotList m_snapshots;
  Words m_words;
  std::optional<double> m_pointer; // its position across, while it is over the plot
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
  [[nodiscard]] std::vector<ReadingPart> ownFigures(const NetworkSnapshot& sample) const override;

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
